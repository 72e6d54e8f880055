#pragma once

#include "common/forms/JudgedField.h"

/// A field for a number with decimals. A point parts them; full-width digits count.
class DecimalField : public JudgedField
{
    Q_OBJECT

public:
    explicit DecimalField(QWidget* parent = nullptr);

    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    void setMinimum(double minimum);
    void setMaximum(double maximum);

    QString problem() const override;

    void setValue(double value);
    /// The number; 0 while there is a problem.
    double value() const;

protected:
    void tidy() override;

private:
    double m_minimum = 0;
    double m_maximum = 1e6;
};
