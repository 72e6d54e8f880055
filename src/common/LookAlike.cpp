#include "common/LookAlike.h"

#include <algorithm>

namespace LookAlike {
namespace {

/// Letters and signs by their class, and nothing on the screen.
bool isFiller(ushort c)
{
    constexpr ushort fillers[] = {0x034f, 0x115f, 0x1160, 0x17b4, 0x17b5, 0x2800, 0x3164, 0xffa0};
    const bool isVariation = c >= 0xfe00 && c <= 0xfe0f;
    return isVariation || std::find(std::begin(fillers), std::end(fillers), c) != std::end(fillers);
}

bool isInvisible(QChar c)
{
    return c.category() == QChar::Other_Format || c.category() == QChar::Other_Control || isFiller(c.unicode());
}

} // namespace

/// Invisible characters go before the compatibility form, which makes letters of some of them, and blanks of others.
QString form(const QString& name)
{
    QString seen;
    for (const QChar c : name) {
        if (!isInvisible(c) || c.isSpace())
            seen += c;
    }
    seen = seen.normalized(QString::NormalizationForm_KC).toCaseFolded();
    seen = seen.normalized(QString::NormalizationForm_KC).simplified();
    while (seen.endsWith(QLatin1Char('.')) || seen.endsWith(QLatin1Char(' ')))
        seen.chop(1);
    return seen;
}

QString find(const QStringList& names, const QString& name)
{
    const QString wanted = form(name);
    const auto found =
        std::find_if(names.begin(), names.end(), [&wanted](const QString& each) { return form(each) == wanted; });
    return found == names.end() ? QString() : *found;
}

bool hasInvisible(const QString& name)
{
    return std::any_of(name.begin(), name.end(), isInvisible);
}

} // namespace LookAlike
