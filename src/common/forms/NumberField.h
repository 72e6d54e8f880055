#pragma once

#include <QLineEdit>

#include <optional>

/// Whole numbers as people type them: blanks around them and full-width digits and signs count. Pure functions.
namespace WholeNumber {

/// Full-width letters, digits and signs as plain ones.
QString halfWidth(QString text);

/// The number that the text is; nothing for any other text. A number beyond 18 digits counts as one of 19, so that it
/// is refused as too large and never wraps.
std::optional<qint64> parse(const QString& text);

/// Why the text is no number from `low` to `high`, in the operator's language; empty when it is one.
QString problem(const QString& text, int low, int high);

} // namespace WholeNumber

/// A text field that is judged while it is typed. A text field on purpose: a mouse wheel over it changes nothing, and a
/// wrong number stays to be corrected instead of being replaced by another.
class JudgedField : public QLineEdit
{
    Q_OBJECT

public:
    /// What is wrong with the text, in the operator's language; empty when it can be taken.
    virtual QString problem() const = 0;

protected:
    explicit JudgedField(QWidget* parent);

    /// Shows by its look whether the text can be taken; to be called when other texts count as right than before.
    void judge();
    /// Writes what can be taken in its usual form: full-width digits become plain ones once the field is left.
    virtual void tidy() = 0;
};

/// A field for a number between two others.
template <typename Number>
class RangedField : public JudgedField
{
public:
    /// The smallest and the largest number that are right.
    Number minimum() const { return m_minimum; }
    Number maximum() const { return m_maximum; }
    void setMinimum(Number minimum) { change(&m_minimum, minimum); }
    void setMaximum(Number maximum) { change(&m_maximum, maximum); }

protected:
    explicit RangedField(QWidget* parent)
        : JudgedField(parent)
    {
    }

private:
    void change(Number* limit, Number to)
    {
        *limit = to;
        judge();
    }

    Number m_minimum = 0;
    Number m_maximum = 1000000;
};

/// A field for a whole number.
class NumberField : public RangedField<int>
{
    Q_OBJECT
    Q_PROPERTY(int minimum READ minimum WRITE setMinimum)
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum)
    Q_PROPERTY(bool optional READ isOptional WRITE setOptional)

public:
    explicit NumberField(QWidget* parent = nullptr);

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
    bool m_optional = false;
};

/// A field for a number with decimals. A point parts them; full-width digits count.
class DecimalField : public RangedField<double>
{
    Q_OBJECT

public:
    explicit DecimalField(QWidget* parent = nullptr);

    QString problem() const override;

    void setValue(double value);
    /// The number; 0 while there is a problem.
    double value() const;

protected:
    void tidy() override;
};
