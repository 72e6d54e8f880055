#pragma once

#include <chrono>

/// How long the next attempt has to wait after wrong passwords: 1 s after the first in a row, twice as long after each
/// further one, up to a minute. One thread.
class RetryDelay
{
public:
    using Clock = std::chrono::steady_clock;

    /// A wrong password was given at `now`; the wait counts from here.
    void failed(Clock::time_point now);
    /// Forgets all failures.
    void succeeded();

    /// The rest of the wait; zero when the next attempt may come.
    std::chrono::milliseconds left(Clock::time_point now) const;

private:
    int m_failures = 0;
    Clock::time_point m_until;
};
