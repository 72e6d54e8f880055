#pragma once

#include <QString>

#include <chrono>

/// Rules of the log-in that an administrator sets, in one file of the home:
///
///     {"idle_minutes": 15}
///
/// A missing file has the defaults; so does a value that is wrong. One thread.
class LogInRules
{
public:
    static constexpr int maxIdleMinutes = 480;

    explicit LogInRules(QString path);

    /// After how long without a touch the present user is logged out; zero, the default: never.
    std::chrono::minutes idleLimit() const { return m_idleLimit; }

    /// Reads the file anew.
    void load();
    /// Stores a limit of 0 to maxIdleMinutes; on failure nothing is changed and `error` (never null) says why.
    bool setIdleLimit(std::chrono::minutes limit, QString* error);

private:
    const QString m_path;
    std::chrono::minutes m_idleLimit{0};
};

/// How long the next attempt has to wait after wrong passwords: 1 s after the first in a row, twice as long after each
/// further one, up to a minute. Kept in a file of the home, so that a restart ends no wait. One thread.
class RetryDelay
{
public:
    using Clock = std::chrono::steady_clock;

    /// Takes on the wait that the file holds, if any is left. Without a path nothing is kept.
    explicit RetryDelay(QString path = {});

    /// A wrong password was given at `now`; the wait counts from here.
    void failed(Clock::time_point now);
    /// Forgets all failures.
    void succeeded();

    /// The rest of the wait; zero when the next attempt may come.
    std::chrono::milliseconds left(Clock::time_point now) const;

private:
    std::chrono::seconds waitNow() const;
    void store() const;

    QString m_path;
    int m_failures = 0;
    Clock::time_point m_until;
};
