#pragma once

#include "common/AuditChange.h"
#include "common/forms/QuestionStrip.h"
#include "support/English.h"
#include "support/Hand.h"
#include "support/Look.h"

/// The changes that a dialog told, as "name:before>after".
inline QString listed(const AuditChanges& changes)
{
    QStringList texts;
    for (const AuditChange& change : changes)
        texts << QStringLiteral("%1:%2>%3").arg(change.name, change.before, change.after);
    return texts.join(' ');
}

/// Operates a dialog, and reads what it tells.
class DialogDriver : public Hand
{
public:
    explicit DialogDriver(QWidget& dialog)
        : m_dialog(dialog)
    {
    }

    void press(const char* name) const override
    {
        turnTo(get<QAbstractButton>(name));
        QVERIFY2(get<QAbstractButton>(name)->isVisible(), name);
        Hand::press(name);
    }

    /// What the dialog tells, without the marks for line breaks.
    QString message(const char* label = "message") const { return text<QLabel>(label).remove(QChar(0x200b)); }

    /// The sentence of an open question; empty while nothing is asked.
    QString question() const { return get<QuestionStrip>("question")->isVisible() ? message("question") : QString(); }

    QStringList clipped() const { return Look::clipped(m_dialog); }
    QStringList chinese() const { return Look::chinese(m_dialog); }
    void shoot(const QString& name) const { Look::shoot(m_dialog, name); }

protected:
    QWidget& window() const override { return m_dialog; }

private:
    QWidget& m_dialog;
};
