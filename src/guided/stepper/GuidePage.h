#pragma once

#include <QWidget>

/// One step of a guide: what is done in it, and what keeps from going on. GUI thread.
class GuidePage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Its name in the row of steps, a word or two; and what is to be done, a sentence.
    virtual QString title() const = 0;
    virtual QString hint() const = 0;
    /// Why the next step cannot come yet; empty when it can.
    virtual QString problem() const { return {}; }
    /// What there is to know although it can.
    virtual QString warning() const { return {}; }
    /// The step is shown, also when somebody comes back to it.
    virtual void enter() {}
    /// It is shown no more.
    virtual void leave() {}
    /// Sets all texts in the present language.
    virtual void retranslate() = 0;

signals:
    /// problem(), warning() or what is to be shown has changed.
    void changed();
    /// What the step is for is done: the guide goes on by itself.
    void finished();
};
