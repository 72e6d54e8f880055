#pragma once

#include <QLineEdit>

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
