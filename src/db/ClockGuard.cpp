#include "db/ClockGuard.h"

namespace {

/// Time services correct less in one step; a wrong date is off by far more.
constexpr qint64 maxStepMs = 5 * 60 * 1000;

} // namespace

bool ClockGuard::check(const Scheduler& scheduler)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const QDateTime now = scheduler.now();
    const qint64 offset = now.toMSecsSinceEpoch() - scheduler.elapsedNs() / 1000000;
    const bool jumped = m_offsetMs && qAbs(offset - *m_offsetMs) > maxStepMs;
    m_offsetMs = offset;
    if (jumped)
        m_jump = now;
    return jumped;
}

void ClockGuard::distrust(const QDateTime& time)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_jump = time;
}

QDateTime ClockGuard::jump() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_jump;
}

void ClockGuard::accept()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_jump = {};
}
