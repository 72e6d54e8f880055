#pragma once

#include <QPointer>
#include <QWidget>
#include <QtTest>

/// A finger on a touch screen, whose touches arrive as the system's.
class Finger
{
public:
    void tap(QWidget* widget, QPoint at = {-1, -1})
    {
        if (at.x() < 0)
            at = widget->rect().center();
        const QPointer<QWidget> window = widget->window();
        const QPoint place = widget->mapTo(window, at);
        QTest::touchEvent(window, device()).press(0, place, window);
        if (window) // it may go by the touch
            QTest::touchEvent(window, device()).release(0, place, window);
        ++taps;
    }
    int taps = 0;

private:
    static QTouchDevice* device()
    {
        static QTouchDevice* const screen = QTest::createTouchDevice();
        return screen;
    }
};
