#pragma once

#include <valvecell/ICameraFeatures.h>

#include <chrono>
#include <deque>

/// Counts how a camera's captures went. One thread at a time.
class CaptureTally
{
public:
    using Clock = std::chrono::steady_clock;

    /// All but `reopened` begins anew.
    void opened();
    void image(Clock::time_point now);
    void incomplete() { ++m_counts.incomplete; }
    void packets(quint64 lost, quint64 resent);
    CameraStatistics statistics(Clock::time_point now) const;

private:
    CameraStatistics m_counts;
    bool m_everOpen = false;
    std::deque<Clock::time_point> m_recent; ///< when the last images came
};
