#pragma once

#include "dialogs/fields/QuestionStrip.h"
#include "support/English.h"
#include "support/Look.h"

#include <QInputMethodEvent>

/// Operates a dialog by the names of its controls, with real clicks and keys.
class DialogDriver
{
public:
    explicit DialogDriver(QWidget& dialog)
        : m_dialog(dialog)
    {
    }

    template <typename Widget>
    Widget* get(const char* name) const
    {
        auto* found = m_dialog.findChild<Widget*>(QLatin1String(name));
        if (!found)
            qFatal("no control %s", name);
        return found;
    }

    void press(const char* name) const
    {
        auto* button = get<QAbstractButton>(name);
        QVERIFY2(button->isVisible(), name);
        // Near the left end: a check box may be wider than what can be clicked.
        QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
    }
    bool canPress(const char* button) const { return get<QAbstractButton>(button)->isEnabled(); }
    bool isChecked(const char* box) const { return get<QAbstractButton>(box)->isChecked(); }

    void type(const char* field, const QString& text) const
    {
        auto* edit = get<QLineEdit>(field);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QInputMethodEvent typed; // letters of any script, as they come from an input method
        typed.setCommitString(text);
        QCoreApplication::sendEvent(edit, &typed);
    }
    template <typename Widget = QLineEdit>
    QString text(const char* name) const
    {
        return get<Widget>(name)->text();
    }

    /// What the dialog tells, without the marks for line breaks.
    QString message(const char* label = "message") const { return get<QLabel>(label)->text().remove(QChar(0x200b)); }

    /// The sentence of an open question; empty while nothing is asked.
    QString question() const
    {
        return get<QuestionStrip>("question")->isVisible() ? get<QLabel>("question")->text() : QString();
    }

    QStringList clipped() const { return Look::clipped(m_dialog); }
    QStringList chinese() const { return Look::chinese(m_dialog); }
    void shoot(const QString& name) const { Look::shoot(m_dialog, name); }

private:
    QWidget& m_dialog;
};
