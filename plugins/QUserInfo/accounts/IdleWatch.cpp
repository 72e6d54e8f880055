#include "accounts/IdleWatch.h"

#include <QCoreApplication>
#include <QTimerEvent>

namespace {

bool isTouch(const QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::InputMethod:
        return event->spontaneous(); // what the program sends itself is nobody's hand
    default:
        return false;
    }
}

} // namespace

IdleWatch::IdleWatch(Clock clock)
    : m_clock(std::move(clock))
{
}

void IdleWatch::watch(std::chrono::minutes limit)
{
    m_limit = limit;
    m_timer.stop();
    QCoreApplication::instance()->removeEventFilter(this);
    if (limit.count() <= 0)
        return;
    QCoreApplication::instance()->installEventFilter(this);
    m_lastTouch = m_clock();
    check();
}

/// One timer that is set to the rest of the time, instead of one that each move of the mouse starts anew.
void IdleWatch::check()
{
    if (m_limit.count() <= 0)
        return;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_lastTouch + m_limit - m_clock());
    if (left.count() > 0)
        return m_timer.start(int(left.count()), this);
    watch(std::chrono::minutes(0));
    emit idle();
}

bool IdleWatch::eventFilter(QObject* watched, QEvent* event)
{
    if (isTouch(event))
        m_lastTouch = m_clock();
    return QObject::eventFilter(watched, event);
}

void IdleWatch::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_timer.timerId())
        check();
}
