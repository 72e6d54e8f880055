#include "TriggerLedger.h"

#include <utility>

namespace {

/// Triggers of a station that the program keeps in hand; it refuses what comes on top, before it answers these.
constexpr std::size_t inHand = 2;
/// From a trigger to its row.
constexpr qint64 settledMs = 5000;

} // namespace

void TriggerLedger::sent(int station, qint64 nowMs, qint64 nowNs)
{
    SentTrigger trigger;
    trigger.station = station;
    trigger.sentMs = nowMs;
    trigger.sentNs = nowNs;
    m_open[station - 1].push_back(trigger);
    ++m_sent;
}

bool TriggerLedger::answered(int station, const PlcFrames::Answer& answer, qint64 nowNs)
{
    Open& open = m_open[station - 1];
    if (open.empty()) {
        ++m_strays;
        return false;
    }
    const bool overrun = answer.angle == PlcFrames::refusedAngle && open.size() > inHand;
    const auto own = open.begin() + (overrun ? inHand : 0);
    SentTrigger trigger = *own;
    open.erase(own);
    trigger.answer = answer;
    trigger.latencyMs = static_cast<double>(nowNs - trigger.sentNs) / 1e6;
    m_lastAnswered[station - 1] = m_ended.size();
    if (trigger.needsNotice())
        m_toBeNoticed[station - 1].push_back(m_ended.size());
    m_ended.append(trigger);
    return true;
}

void TriggerLedger::noticed(int station)
{
    std::deque<int>& waiting = m_toBeNoticed[station - 1];
    if (waiting.empty()) {
        ++m_strays;
        return;
    }
    m_ended[waiting.front()].noticed = true;
    waiting.pop_front();
}

/// An answer whose notice is still on its way has lost it.
void TriggerLedger::gap(Gap gap)
{
    for (int i = 0; i < 2; ++i) {
        for (SentTrigger& trigger : m_open[i]) {
            trigger.gap = gap;
            m_ended.append(trigger);
        }
        m_open[i].clear();
        for (const int position : std::exchange(m_toBeNoticed[i], {}))
            m_ended[position].noticed = true;
    }
}

void TriggerLedger::killed(std::optional<qint64> diskFullSinceMs)
{
    gap(Gap::Killed);
    for (int& last : m_lastAnswered)
        if (const int position = std::exchange(last, -1); position >= 0)
            m_ended[position].mayLackRow = true;
    if (!diskFullSinceMs)
        return;
    for (auto it = m_ended.rbegin(); it != m_ended.rend() && it->sentMs + settledMs >= *diskFullSinceMs; ++it)
        it->mayLackRow = true;
}

QVector<SentTrigger> TriggerLedger::all() const
{
    QVector<SentTrigger> all = m_ended;
    for (const Open& open : m_open)
        for (const SentTrigger& trigger : open)
            all.append(trigger);
    return all;
}
