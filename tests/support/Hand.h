#pragma once

#include <QAbstractButton>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QtTest>

/// Operates a window by the names of its controls, with real clicks and keys.
class Hand
{
public:
    virtual ~Hand() = default;

    template <typename Widget>
    Widget* get(const char* name) const
    {
        auto* found = window().findChild<Widget*>(QLatin1String(name));
        if (!found)
            qFatal("no control %s", name);
        return found;
    }

    virtual void press(const char* name) const
    {
        auto* button = get<QAbstractButton>(name);
        turnTo(button);
        // Near the left end: a check box may be wider than what can be clicked.
        QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
    }
    bool canPress(const char* button) const { return get<QAbstractButton>(button)->isEnabled(); }
    bool isChecked(const char* box) const { return get<QAbstractButton>(box)->isChecked(); }

    void type(const char* field, const QString& text) const
    {
        auto* edit = get<QLineEdit>(field);
        turnTo(edit);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QInputMethodEvent typed; // letters of any script, as they come from an input method
        typed.setCommitString(text);
        QCoreApplication::sendEvent(edit, &typed);
    }
    /// Presses and types in this order: {"addButton", "nameEdit=W18", "okButton"}.
    void act(std::initializer_list<QString> steps) const
    {
        for (const QString& step : steps) {
            const QByteArray name = step.section('=', 0, 0).toLatin1();
            step.contains('=') ? type(name, step.section('=', 1)) : press(name);
        }
    }
    template <typename Widget = QLineEdit>
    QString text(const char* name) const
    {
        return get<Widget>(name)->text();
    }

protected:
    virtual QWidget& window() const = 0;

    /// Brings the page on which it lies to the front.
    static void turnTo(QWidget* control)
    {
        for (QWidget* page = control; page->parentWidget(); page = page->parentWidget()) {
            auto* tabs =
                page->parentWidget() ? qobject_cast<QTabWidget*>(page->parentWidget()->parentWidget()) : nullptr;
            if (tabs)
                tabs->setCurrentWidget(page);
        }
    }
};

/// Of any window.
class WindowHand : public Hand
{
public:
    explicit WindowHand(QWidget* window)
        : m_window(window)
    {
    }

protected:
    QWidget& window() const override { return *m_window; }

private:
    QWidget* m_window;
};
