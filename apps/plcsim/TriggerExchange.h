#pragma once

#include "PlcFrames.h"
#include "TriggerPace.h"

#include <QObject>
#include <QTimer>

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
