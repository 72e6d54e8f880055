#pragma once

#include "common/Scheduler.h"

#include <mutex>
#include <optional>

/// Notices when the clock is set by more than time services correct in a step: what is old is in doubt from then on,
/// until somebody has looked at the clock. Any thread.
class ClockGuard
{
public:
    /// Compares the clock's way since the last call with that of the monotonic one, so that a clock that runs a little
    /// fast is none that jumps. True when it jumped just now.
    bool check(const Scheduler& scheduler);
    /// It is known to be wrong: counts as a jump to that time.
    void distrust(const QDateTime& time);
    /// The time to which it jumped; not valid unless it did since the last accept().
    QDateTime jump() const;
    void accept();

private:
    mutable std::mutex m_mutex;
    std::optional<qint64> m_offsetMs; ///< from the monotonic clock to the other, at the last check
    QDateTime m_jump;
};
