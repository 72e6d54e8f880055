#pragma once

#include "common/Scheduler.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <vector>

/// Time that stands still until a test moves it on; timers come due in their order, on the test's thread, and what they
/// queue runs before the next one. No threads, unless a test wants them.
class ManualScheduler : public Scheduler
{
public:
    explicit ManualScheduler(QDateTime start = QDateTime(QDate(2026, 3, 31), QTime(12, 0)))
        : m_start(std::move(start))
    {
    }

    QDateTime now() const override { return m_start.addMSecs(m_elapsed + m_jump); }
    qint64 elapsedNs() const override { return m_elapsed * 1000000; }
    bool usesThreads() const override { return threads; }
    bool threads = false; ///< to be set before the first use
    std::unique_ptr<Timer> timer(Kind kind, std::function<void()> due) override
    {
        return std::make_unique<ManualTimer>(*this, kind, std::move(due));
    }

    /// Lets so much time go by.
    void advance(qint64 ms)
    {
        const qint64 end = m_elapsed + ms;
        settle();
        while (ManualTimer* const next = nextBefore(end)) {
            m_elapsed = std::max(m_elapsed.load(), next->due);
            next->fire();
            settle();
        }
        m_elapsed = end;
    }
    /// Lets so much time go by in which the GUI thread is held up: nothing comes due.
    void holdUp(qint64 ms) { m_elapsed += ms; }
    /// Sets the clock, as an operator does; timers do not see it.
    void setClock(const QDateTime& time) { m_jump += now().msecsTo(time); }

    /// Runs what was queued.
    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private:
    struct ManualTimer : Timer
    {
        ManualTimer(ManualScheduler& s, Kind k, std::function<void()> a)
            : scheduler(s)
            , kind(k)
            , action(std::move(a))
        {
        }
        ~ManualTimer() override { stop(); }
        void start(int ms) override
        {
            stop();
            interval = ms;
            due = scheduler.m_elapsed + ms;
            scheduler.m_timers.push_back(this);
        }
        void stop() override
        {
            auto& timers = scheduler.m_timers;
            timers.erase(std::remove(timers.begin(), timers.end(), this), timers.end());
        }
        bool isActive() const override
        {
            return std::count(scheduler.m_timers.begin(), scheduler.m_timers.end(), this) > 0;
        }
        void fire()
        {
            if (kind == SingleShot)
                stop();
            else
                start(std::max(1, interval));
            const std::function<void()> act = action; // the timer may go by what it does
            act();
        }

        ManualScheduler& scheduler;
        const Kind kind;
        const std::function<void()> action;
        int interval = 0;
        qint64 due = 0;
    };

    ManualTimer* nextBefore(qint64 end) const
    {
        const auto first = std::min_element(m_timers.begin(), m_timers.end(),
                                            [](const ManualTimer* a, const ManualTimer* b) { return a->due < b->due; });
        return first != m_timers.end() && (*first)->due <= end ? *first : nullptr;
    }

    const QDateTime m_start;
    std::atomic<qint64> m_elapsed{0};
    qint64 m_jump = 0;
    std::vector<ManualTimer*> m_timers;
};

/// The system's timers and threads, under a clock that a test sets.
class SetClock : public Scheduler
{
public:
    explicit SetClock(QDateTime time)
        : m_now(std::move(time))
    {
    }

    void set(const QDateTime& time) { m_now = time; }
    QDateTime now() const override { return m_now; }
    qint64 elapsedNs() const override { return system().elapsedNs(); }
    std::unique_ptr<Timer> timer(Kind kind, std::function<void()> due) override
    {
        return system().timer(kind, std::move(due));
    }
    bool usesThreads() const override { return true; }

private:
    QDateTime m_now;
};
