#include "db/SqlText.h"

#include "common/LookAlike.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace SqlText {
namespace {

/// Bytes that every common file system takes for one name, with room for a suffix.
constexpr int maxFolderBytes = 200;

/// Reserved on one of the platforms or the other; an archive may be copied between them.
const QString pathCharacters = QStringLiteral("\\/:*?\"<>|");

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(SqlText)
};

bool refuse(QString* error, const QString& why)
{
    if (error)
        *error = why;
    return false;
}

bool isControl(QChar c)
{
    return c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

/// "%1" to "%99" and "%L1": what filling a statement's placeholders would take for its own.
bool holdsMarker(const QString& text)
{
    static const QRegularExpression marker(QStringLiteral("%L?[0-9]"));
    return text.contains(marker);
}

/// Returns the first reason only: an operator mends one thing at a time.
bool carriesText(const QString& text, QString* error, int maxLength, bool lineBreaks)
{
    if (text.size() > maxLength)
        return refuse(error, Texts::tr("文字太长：最多%1个字符，现为%2个。").arg(maxLength).arg(text.size()));
    if (text.contains(QLatin1Char('\'')))
        return refuse(error, Texts::tr("文字中不能含有单引号（'）。"));
    if (holdsMarker(text))
        return refuse(error, Texts::tr("文字中的百分号（%）后面不能跟数字。"));
    if (!text.isValidUtf16())
        return refuse(error, Texts::tr("文字中含有不完整的字符。"));
    for (const QChar c : text) {
        const bool breaks = c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QLatin1Char('\t');
        if (isControl(c) && !(lineBreaks && breaks))
            return refuse(error, Texts::tr("文字中不能含有换行等控制字符。"));
    }
    return true;
}

bool isDeviceName(const QString& name)
{
    static const QRegularExpression device(QStringLiteral("^(con|prn|aux|nul|com[0-9]|lpt[0-9])(\\..*)?$"),
                                           QRegularExpression::CaseInsensitiveOption);
    return device.match(name).hasMatch();
}

QString cutToBytes(QString name)
{
    while (name.toUtf8().size() > maxFolderBytes)
        name.chop(name.at(name.size() - 1).isLowSurrogate() ? 2 : 1);
    return name;
}

} // namespace

bool carries(const QString& text, QString* error, int maxLength)
{
    return carriesText(text, error, maxLength, false);
}

bool carriesFreeText(const QString& text, QString* error, int maxLength)
{
    return carriesText(text, error, maxLength, true);
}

/// folderName() has the last word: a name that it would change could meet another model's folder.
bool carriesModelName(const QString& name, QString* error)
{
    if (name.trimmed().isEmpty())
        return refuse(error, Texts::tr("型号名不能为空。"));
    if (!carries(name, error, maxNameLength))
        return false;
    if (name != name.trimmed())
        return refuse(error, Texts::tr("型号名的开头和结尾不能是空格。"));
    for (const QChar c : pathCharacters) {
        if (name.contains(c))
            return refuse(error, Texts::tr("型号名中不能含有字符 %1").arg(c));
    }
    if (LookAlike::hasInvisible(name))
        return refuse(error, Texts::tr("型号名中含有看不见的字符。"));
    if (folderName(name) != name)
        return refuse(error, Texts::tr("型号名“%1”不能用作文件夹名。").arg(name));
    return true;
}

QString madeCarriable(QString text)
{
    text.replace(QLatin1Char('\''), QChar(0x2019));
    for (QChar& c : text) {
        if (isControl(c))
            c = QLatin1Char(' ');
    }
    // A cut character becomes '?' on its way through UTF-8.
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

/// Cut to its length before the end is trimmed, since the cut may leave a dot or a blank there.
QString folderName(const QString& name)
{
    QString folder = name.trimmed();
    for (QChar& c : folder) {
        if (pathCharacters.contains(c) || isControl(c) || c == QLatin1Char('\''))
            c = QLatin1Char('_');
    }
    if (folder.startsWith(QLatin1Char('.')))
        folder[0] = QLatin1Char('_');
    folder = cutToBytes(folder);
    while (folder.endsWith(QLatin1Char('.')) || folder.endsWith(QLatin1Char(' ')))
        folder.chop(1);
    if (folder.isEmpty() || isDeviceName(folder))
        folder.prepend(QLatin1Char('_'));
    return folder;
}

} // namespace SqlText
