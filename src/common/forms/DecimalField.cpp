#include "common/forms/DecimalField.h"

#include "common/forms/WholeNumber.h"

#include <cmath>
#include <optional>

namespace {

std::optional<double> parse(const QString& text)
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
    : JudgedField(parent)
{
}

void DecimalField::setMinimum(double minimum)
{
    m_minimum = minimum;
    judge();
}

void DecimalField::setMaximum(double maximum)
{
    m_maximum = maximum;
    judge();
}

QString DecimalField::problem() const
{
    if (text().trimmed().isEmpty())
        return tr("请输入数字");
    const std::optional<double> value = parse(text());
    if (!value)
        return tr("“%1”不是数字").arg(text().trimmed());
    if (*value < m_minimum || *value > m_maximum)
        return tr("应在%1到%2之间").arg(shown(m_minimum), shown(m_maximum));
    return {};
}

void DecimalField::setValue(double value)
{
    setText(shown(value));
}

double DecimalField::value() const
{
    return problem().isEmpty() ? parse(text()).value_or(0) : 0;
}

void DecimalField::tidy()
{
    setValue(value());
}
