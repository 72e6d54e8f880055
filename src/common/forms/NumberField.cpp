#include "common/forms/NumberField.h"

#include "common/forms/InlineMessage.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace WholeNumber {
namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(WholeNumber)
};

constexpr ushort fullWidthFirst = 0xFF01; // the full-width forms repeat '!' to '~' in their order
constexpr ushort fullWidthLast = 0xFF5E;

/// A number that is too large for any field is still a number, and is refused as one.
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
        if (c.unicode() >= fullWidthFirst && c.unicode() <= fullWidthLast)
            c = QChar(c.unicode() - fullWidthFirst + '!');
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

JudgedField::JudgedField(QWidget* parent)
    : QLineEdit(parent)
{
    setMaxLength(40);
    setInputMethodHints(Qt::ImhFormattedNumbersOnly); // what a keyboard on the screen shows
    connect(this, &QLineEdit::textChanged, this, &JudgedField::judge);
    connect(this, &QLineEdit::editingFinished, this, [this] {
        if (problem().isEmpty())
            tidy();
    });
}

void JudgedField::judge()
{
    setTone(this, problem().isEmpty() ? Tone::Plain : Tone::Error);
}

NumberField::NumberField(QWidget* parent)
    : RangedField(parent)
{
}

void NumberField::setOptional(bool optional)
{
    m_optional = optional;
    judge();
}

QString NumberField::problem() const
{
    if (m_optional && text().trimmed().isEmpty())
        return {};
    return WholeNumber::problem(text(), minimum(), maximum());
}

int NumberField::value() const
{
    return problem().isEmpty() ? int(WholeNumber::parse(text()).value_or(0)) : 0;
}

void NumberField::tidy()
{
    const bool empty = text().trimmed().isEmpty();
    setText(empty ? QString() : QString::number(value()));
}

namespace {

std::optional<double> parseDecimal(const QString& text)
{
    bool number = false;
    const double value = WholeNumber::halfWidth(text).trimmed().toDouble(&number);
    return number && std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

QString shown(double value)
{
    return QString::number(value, 'g', 10);
}

} // namespace

DecimalField::DecimalField(QWidget* parent)
    : RangedField(parent)
{
}

QString DecimalField::problem() const
{
    if (text().trimmed().isEmpty())
        return tr("请输入数字");
    const std::optional<double> value = parseDecimal(text());
    if (!value)
        return tr("“%1”不是数字").arg(text().trimmed());
    if (*value < minimum() || *value > maximum())
        return tr("应在%1到%2之间").arg(shown(minimum()), shown(maximum()));
    return {};
}

void DecimalField::setValue(double value)
{
    setText(shown(value));
}

double DecimalField::value() const
{
    return problem().isEmpty() ? parseDecimal(text()).value_or(0) : 0;
}

void DecimalField::tidy()
{
    setValue(value());
}
