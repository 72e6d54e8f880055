#pragma once

#include "common/forms/JudgedField.h"

/// A field for a whole number.
class NumberField : public JudgedField
{
    Q_OBJECT
    Q_PROPERTY(int minimum READ minimum WRITE setMinimum)
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum)
    Q_PROPERTY(bool optional READ isOptional WRITE setOptional)

public:
    explicit NumberField(QWidget* parent = nullptr);

    /// The smallest and the largest number that are right.
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    void setMinimum(int minimum);
    void setMaximum(int maximum);

    /// Whether nothing typed is right, too.
    bool isOptional() const { return m_optional; }
    void setOptional(bool optional);

    QString problem() const override;

    void setValue(int value) { setText(QString::number(value)); }
    /// The number; 0 while there is a problem or nothing.
    int value() const;

protected:
    void tidy() override;

private:
    int m_minimum = 0;
    int m_maximum = 1000000;
    bool m_optional = false;
};
