#include "dialogs/fields/NumberField.h"

#include "dialogs/fields/Tone.h"
#include "dialogs/fields/WholeNumber.h"

namespace {
constexpr int kLongestNumber = 40;
} // namespace

NumberField::NumberField(QWidget* parent)
    : QLineEdit(parent)
{
    setMaxLength(kLongestNumber);
    connect(this, &QLineEdit::textChanged, this, &NumberField::judge);
    connect(this, &QLineEdit::editingFinished, this, &NumberField::tidy);
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

void NumberField::judge()
{
    setTone(this, problem().isEmpty() ? Tone::Plain : Tone::Error);
}

/// Full-width digits become plain ones once the field is left.
void NumberField::tidy()
{
    const bool empty = text().trimmed().isEmpty();
    if (problem().isEmpty())
        setText(empty ? QString() : QString::number(value()));
}
