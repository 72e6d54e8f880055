#pragma once

#include <QDateTime>

#include <functional>
#include <memory>

/// Where the cell has its time from: clock, timers, and whether work may go to threads. There is the system's, and
/// there is that of a test, which runs hours in moments and one thing after another.
class Scheduler
{
public:
    class Timer
    {
    public:
        virtual ~Timer() = default;
        /// From now on due after so many milliseconds, once or again and again; a running one starts anew.
        virtual void start(int ms) = 0;
        virtual void stop() = 0;
        virtual bool isActive() const = 0;
    };
    enum Kind { Repeating, SingleShot };

    virtual ~Scheduler() = default;

    /// The local time; it may be set back. Any thread.
    virtual QDateTime now() const = 0;
    /// Nanoseconds since some moment; never set back. Any thread.
    virtual qint64 elapsedNs() const = 0;
    /// A stopped timer that calls `due` on the thread that made it.
    virtual std::unique_ptr<Timer> timer(Kind kind, std::function<void()> due) = 0;
    /// False: nobody may start a thread; what would run on one runs on the caller's, or in pieces on a timer.
    virtual bool usesThreads() const = 0;

    /// That of the operating system. It needs an event loop for its timers.
    static Scheduler& system();
};
