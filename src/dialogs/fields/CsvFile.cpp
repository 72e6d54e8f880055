#include "dialogs/fields/CsvFile.h"

#include <QSaveFile>

namespace {

QByteArray bytes(const QVector<QStringList>& lines)
{
    QString text(QChar::ByteOrderMark);
    for (const QStringList& line : lines) {
        QStringList cells;
        for (const QString& plain : line)
            cells << CsvFile::cell(plain);
        text += cells.join(QLatin1Char(',')) + QStringLiteral("\r\n");
    }
    return text.toUtf8();
}

} // namespace

CsvFile::CsvFile(QString path, QVector<QStringList> lines, QObject* parent)
    : QThread(parent)
    , m_path(std::move(path))
    , m_lines(std::move(lines))
{
}

CsvFile::~CsvFile()
{
    wait();
}

QString CsvFile::cell(const QString& text)
{
    static const QString formulaStarts = QStringLiteral("=+-@\t\r\n");
    static const QString quoted = QStringLiteral(",\"\r\n");
    QString safe = text;
    if (!safe.isEmpty() && formulaStarts.contains(safe.at(0)))
        safe.prepend(QLatin1Char('\''));
    const bool quote = std::any_of(safe.cbegin(), safe.cend(), [](QChar c) { return quoted.contains(c); });
    if (!quote)
        return safe;
    safe.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + safe + QLatin1Char('"');
}

void CsvFile::run()
{
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes(m_lines)) < 0 || !file.commit())
        m_error = file.errorString();
}
