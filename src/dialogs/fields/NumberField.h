#pragma once

#include <QLineEdit>

/// A text field for a whole number that is judged while it is typed. A text field on purpose: a mouse wheel over it
/// changes nothing, and a wrong number stays to be corrected instead of being replaced by another.
class NumberField : public QLineEdit
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

    /// What is wrong with the text, in the operator's language; empty when it can be taken.
    QString problem() const;

    void setValue(int value) { setText(QString::number(value)); }
    /// The number; 0 while there is a problem or nothing.
    int value() const;

private:
    void judge();
    void tidy();

    int m_minimum = 0;
    int m_maximum = 1000000;
    bool m_optional = false;
};
