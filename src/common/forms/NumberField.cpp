#include "common/forms/NumberField.h"

#include "common/forms/WholeNumber.h"

NumberField::NumberField(QWidget* parent)
    : JudgedField(parent)
{
}

void NumberField::setMinimum(int minimum)
{
    m_minimum = minimum;
    judge();
}

void NumberField::setMaximum(int maximum)
{
    m_maximum = maximum;
    judge();
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
    return WholeNumber::problem(text(), m_minimum, m_maximum);
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
