#include "common/Scheduler.h"

#include <QTimer>

#include <chrono>

namespace {

class SystemTimer : public Scheduler::Timer
{
public:
    SystemTimer(Scheduler::Kind kind, const std::function<void()>& due)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setSingleShot(kind == Scheduler::SingleShot);
        QObject::connect(&m_timer, &QTimer::timeout, due);
    }

    void start(int ms) override { m_timer.start(ms); }
    void stop() override { m_timer.stop(); }
    bool isActive() const override { return m_timer.isActive(); }

private:
    QTimer m_timer;
};

class SystemScheduler : public Scheduler
{
public:
    QDateTime now() const override { return QDateTime::currentDateTime(); }
    qint64 elapsedNs() const override
    {
        const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count();
    }
    std::unique_ptr<Timer> timer(Kind kind, std::function<void()> due) override
    {
        return std::make_unique<SystemTimer>(kind, due);
    }
    bool usesThreads() const override { return true; }
};

} // namespace

Scheduler& Scheduler::system()
{
    static SystemScheduler scheduler;
    return scheduler;
}
