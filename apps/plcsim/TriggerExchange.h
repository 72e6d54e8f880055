#pragma once

#include "PlcFrames.h"

#include <QObject>
#include <QTimer>
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

    static constexpr qint64 never = -3'600'000'000'000'000;
    qint64 m_filterNs;
    qint64 m_intervalNs;
    std::array<qint64, 2> m_last{never, never};
};

class PlcLine;

/// What came of one trigger.
struct ExchangeResult
{
    int station = 0;
    bool answered = false;
    bool noticed = false; ///< the "H" frame came after an answer without an angle
    PlcFrames::Answer answer;
    double latencyMs = 0; ///< trigger frame's last byte to answer frame's last byte
};

/// Triggers a station and takes its answer; one trigger at a time.
class TriggerExchange : public QObject
{
    Q_OBJECT

public:
    /// `timeoutMs`: how long an answer, and after it an "H" frame, may take.
    TriggerExchange(PlcLine& line, TriggerPace pace, int timeoutMs);

    /// Sends the trigger as soon as the pace allows; done() follows.
    void trigger(int station);

    /// Frames from the program that answered nothing, heartbeats not counted.
    int strayFrames() const { return m_strayFrames; }

signals:
    void done(const ExchangeResult& result);

private:
    enum Phase { Idle, Waiting, AwaitAnswer, AwaitNotice };

    void sendTrigger();
    void onFrame(const SComFrame& frame, qint64 atNs);
    /// An answer without an angle is complete with its "H" frame only.
    void onAnswer(const SComFrame& frame, qint64 atNs);
    /// Also when the time has run out: what came until then is the result.
    void finish();

    PlcLine& m_line;
    TriggerPace m_pace;
    const int m_timeoutMs;
    Phase m_phase = Idle;
    ExchangeResult m_result;
    qint64 m_sentNs = 0;
    int m_strayFrames = 0;
    QTimer m_wait;
    QTimer m_deadline;
};
