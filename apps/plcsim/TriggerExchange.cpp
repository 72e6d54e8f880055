#include "TriggerExchange.h"

#include "PlcLine.h"

TriggerExchange::TriggerExchange(PlcLine& line, TriggerPace pace, int timeoutMs)
    : m_line(line)
    , m_pace(pace)
    , m_timeoutMs(timeoutMs)
{
    for (QTimer* timer : {&m_wait, &m_deadline}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&m_wait, &QTimer::timeout, this, &TriggerExchange::sendTrigger);
    connect(&m_deadline, &QTimer::timeout, this, &TriggerExchange::finish);
    connect(&line, &PlcLine::frameReceived, this, &TriggerExchange::onFrame);
}

/// A millisecond more than asked for, since the timer takes whole ones.
void TriggerExchange::trigger(int station)
{
    m_result = {};
    m_result.station = station;
    m_phase = Waiting;
    const qint64 waitNs = m_pace.waitNs(station, PlcLine::nowNs());
    if (waitNs == 0)
        sendTrigger();
    else
        m_wait.start(static_cast<int>(waitNs / 1'000'000) + 1);
}

void TriggerExchange::sendTrigger()
{
    m_phase = AwaitAnswer;
    m_sentNs = m_line.send(PlcFrames::triggerOf(m_result.station));
    m_pace.triggered(m_result.station, m_sentNs);
    m_deadline.start(m_timeoutMs);
}

void TriggerExchange::onFrame(const SComFrame& frame, qint64 atNs)
{
    if (frame.command == PlcFrames::heartbeat)
        return;
    if (m_phase == AwaitAnswer && frame.command == PlcFrames::answerOf(m_result.station)) {
        onAnswer(frame, atNs);
    } else if (m_phase == AwaitNotice && frame.command == PlcFrames::notice && frame.data[0] == m_result.station + 5) {
        m_result.noticed = true;
        finish();
    } else {
        ++m_strayFrames;
    }
}

void TriggerExchange::onAnswer(const SComFrame& frame, qint64 atNs)
{
    m_result.answered = true;
    m_result.answer = PlcFrames::answerFrom(frame);
    m_result.latencyMs = static_cast<double>(atNs - m_sentNs) / 1e6;
    if (m_result.answer.angle < PlcFrames::firstNoAngle) {
        finish();
        return;
    }
    m_phase = AwaitNotice;
    m_deadline.start(m_timeoutMs);
}

void TriggerExchange::finish()
{
    m_deadline.stop();
    m_phase = Idle;
    emit done(ExchangeResult(m_result)); // a copy: who hears it may trigger at once
}
