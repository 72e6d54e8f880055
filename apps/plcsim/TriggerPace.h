#pragma once

#include <QtGlobal>

#include <algorithm>
#include <array>

/// When the next trigger may go out: not before the program takes one of that station again, and not sooner after the
/// last trigger of any station than parts come along. Times are in nanoseconds of one clock.
class TriggerPace
{
public:
    /// `filterMs` is the program's filter time, `intervalMs` the time from part to part.
    TriggerPace(int filterMs, int intervalMs)
        : m_filterNs(withMargin(filterMs) * 1'000'000)
        , m_intervalNs(qint64(intervalMs) * 1'000'000)
    {
    }

    void triggered(int station, qint64 nowNs) { m_last[station - 1] = nowNs; }

    /// 0 when it may go out now.
    qint64 waitNs(int station, qint64 nowNs) const
    {
        const qint64 byFilter = m_last[station - 1] + m_filterNs - nowNs;
        const qint64 byInterval = std::max(m_last[0], m_last[1]) + m_intervalNs - nowNs;
        return std::max({qint64(0), byFilter, byInterval});
    }

private:
    /// The program's timer starts later than the trigger goes out and may run a twentieth longer than asked for.
    static qint64 withMargin(int filterMs) { return filterMs > 0 ? filterMs + filterMs / 10 + 10 : 0; }

    static constexpr qint64 kNever = -3'600'000'000'000'000;
    qint64 m_filterNs;
    qint64 m_intervalNs;
    std::array<qint64, 2> m_last{kNever, kNever};
};
