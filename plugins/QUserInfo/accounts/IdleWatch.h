#pragma once

#include <QBasicTimer>
#include <QObject>

#include <chrono>
#include <functional>

/// Reports when nobody has touched the program for a while: no key, mouse, wheel or finger in any of its windows. One
/// thread, that of the windows.
class IdleWatch : public QObject
{
    Q_OBJECT

public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Clock = std::function<TimePoint()>;

    explicit IdleWatch(Clock clock = &std::chrono::steady_clock::now);

    /// From now on, idle() is emitted once nothing has happened for so long, and then the watch rests; zero ends it.
    void watch(std::chrono::minutes limit);

    /// Looks at the clock; the watch does so by itself.
    void check();

signals:
    void idle();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    const Clock m_clock;
    std::chrono::minutes m_limit{0};
    TimePoint m_lastTouch;
    QBasicTimer m_timer;
};
