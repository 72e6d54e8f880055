#pragma once

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

/// A mouse over the viewport of a view; events arrive as from a real one.
class Mouse
{
public:
    explicit Mouse(QAbstractScrollArea& view)
        : m_target(view.viewport())
    {
    }

    void move(const QPoint& to)
    {
        m_at = to;
        send(QEvent::MouseMove, Qt::NoButton);
    }

    void press(const QPoint& at)
    {
        move(at);
        m_buttons = Qt::LeftButton;
        send(QEvent::MouseButtonPress, Qt::LeftButton);
    }

    void release()
    {
        m_buttons = Qt::NoButton;
        send(QEvent::MouseButtonRelease, Qt::LeftButton);
    }

    void click(const QPoint& at)
    {
        press(at);
        release();
    }

    void doubleClick(const QPoint& at)
    {
        click(at);
        m_buttons = Qt::LeftButton;
        send(QEvent::MouseButtonDblClick, Qt::LeftButton);
        release();
    }

    /// In a few steps, as a hand does.
    void drag(const QPoint& from, const QPoint& to)
    {
        press(from);
        for (int i = 1; i <= 4; ++i)
            move(from + (to - from) * i / 4);
        release();
    }

    void wheel(int angle)
    {
        const QPointF at = m_target->rect().center();
        QWheelEvent event(at, m_target->mapToGlobal(at.toPoint()), QPoint(), QPoint(0, angle), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_target, &event);
    }

private:
    void send(QEvent::Type type, Qt::MouseButton button)
    {
        QMouseEvent event(type, m_at, m_at, m_target->mapToGlobal(m_at), button, m_buttons, Qt::NoModifier);
        QApplication::sendEvent(m_target, &event);
    }

    QWidget* m_target;
    QPoint m_at;
    Qt::MouseButtons m_buttons = Qt::NoButton;
};
