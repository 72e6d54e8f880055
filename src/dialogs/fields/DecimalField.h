#pragma once

#include <QLineEdit>

/// A text field for a number with decimals that is judged while it is typed, as NumberField does for whole ones. A
/// point parts the decimals; full-width digits count.
class DecimalField : public QLineEdit
{
    Q_OBJECT

public:
    explicit DecimalField(QWidget* parent = nullptr);

    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    void setMinimum(double minimum);
    void setMaximum(double maximum);

    /// What is wrong with the text, in the operator's language; empty when it can be taken.
    QString problem() const;

    void setValue(double value);
    /// The number; 0 while there is a problem.
    double value() const;

private:
    void judge();
    void tidy();

    double m_minimum = 0;
    double m_maximum = 1e6;
};
