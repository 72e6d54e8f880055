#include "common/forms/WholeNumber.h"

#include <QCoreApplication>

#include <algorithm>

namespace WholeNumber {
namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(WholeNumber)
};

constexpr ushort kFullWidthFirst = 0xFF01; // the full-width forms repeat '!' to '~' in their order
constexpr ushort kFullWidthLast = 0xFF5E;

/// A number that is too large for any field is still a number, and is told so.
bool isLong(const QString& text)
{
    const int start = text.startsWith(QLatin1Char('-')) ? 1 : 0;
    return text.size() > start + 18 &&
           std::all_of(text.begin() + start, text.end(), [](QChar c) { return c >= '0' && c <= '9'; });
}

} // namespace

QString halfWidth(QString text)
{
    for (QChar& c : text) {
        if (c.unicode() >= kFullWidthFirst && c.unicode() <= kFullWidthLast)
            c = QChar(c.unicode() - kFullWidthFirst + '!');
    }
    return text;
}

std::optional<qint64> parse(const QString& text)
{
    const QString plain = halfWidth(text).trimmed();
    if (isLong(plain))
        return plain.startsWith(QLatin1Char('-')) ? -Q_INT64_C(1000000000000000000) : Q_INT64_C(1000000000000000000);
    bool number = false;
    const qint64 value = plain.toLongLong(&number);
    return number ? std::optional<qint64>(value) : std::nullopt;
}

QString problem(const QString& text, int low, int high)
{
    if (text.trimmed().isEmpty())
        return Tr::tr("请输入数字");
    const std::optional<qint64> value = parse(text);
    if (!value)
        return Tr::tr("“%1”不是整数").arg(text.trimmed());
    if (*value < low || *value > high)
        return Tr::tr("应在%1到%2之间").arg(low).arg(high);
    return {};
}

} // namespace WholeNumber
