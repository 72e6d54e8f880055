#include "CaptureTally.h"

namespace {

constexpr std::chrono::seconds window(5);

} // namespace

void CaptureTally::opened()
{
    CameraStatistics counts;
    counts.reopened = m_counts.reopened + (m_everOpen ? 1 : 0);
    m_counts = counts;
    m_everOpen = true;
}

void CaptureTally::image(Clock::time_point now)
{
    ++m_counts.images;
    m_recent.push_back(now);
    while (now - m_recent.front() > window)
        m_recent.pop_front();
}

void CaptureTally::packets(quint64 lost, quint64 resent)
{
    m_counts.lostPackets = lost;
    m_counts.resentPackets = resent;
}

CameraStatistics CaptureTally::statistics(Clock::time_point now) const
{
    CameraStatistics counts = m_counts;
    int recent = 0;
    for (const Clock::time_point at : m_recent)
        recent += now - at <= window ? 1 : 0;
    counts.imagesPerSec = recent / std::chrono::duration<double>(window).count();
    return counts;
}
