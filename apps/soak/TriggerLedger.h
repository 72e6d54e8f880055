#pragma once

#include "PlcFrames.h"

#include <QVector>
#include <QtGlobal>

#include <array>
#include <deque>
#include <optional>

/// Why nobody can ask for the answer to a trigger.
enum class Gap {
    None,
    LineCut, ///< the cable was pulled before the answer came
    Killed,  ///< so was the program
};

/// One trigger that the PLC sent, and what came of it.
struct SentTrigger
{
    int station = 0;
    qint64 sentMs = 0; ///< since the epoch, by the clock that the rows are stamped with
    qint64 sentNs = 0;
    double latencyMs = 0;
    std::optional<PlcFrames::Answer> answer;
    Gap gap = Gap::None;
    bool noticed = false;    ///< the "H" frame came
    bool mayLackRow = false; ///< the program was killed with its row in hand, or with no disk to keep it on
    bool needsNotice() const { return answer && answer->angle >= PlcFrames::firstNoAngle; }
};

/// What the PLC sent and what it got: a frame of an answer names its station and no trigger, so the ledger pairs them.
/// A station answers in order, except that it refuses at once what comes on top of the two that it has in hand.
class TriggerLedger
{
public:
    /// `nowMs` by the clock of the rows, `nowNs` by one that is never set.
    void sent(int station, qint64 nowMs, qint64 nowNs);
    /// False for an answer that nobody asked for.
    bool answered(int station, const PlcFrames::Answer& answer, qint64 nowNs);
    void noticed(int station);
    /// All that is open lies in a gap from now on.
    void cut() { gap(Gap::LineCut); }
    /// So does it; of each station, the last answer may have no row. Nor may those to triggers of a full disk's time.
    void killed(std::optional<qint64> diskFullSinceMs);

    int open(int station) const { return static_cast<int>(m_open[station - 1].size()); }
    int open() const { return open(1) + open(2); }
    int sentCount() const { return m_sent; }
    /// Answers and "H" frames to no trigger.
    int strays() const { return m_strays; }

    /// Those that have ended, in that order, and behind them those that never did.
    QVector<SentTrigger> all() const;

private:
    void gap(Gap gap);
    using Open = std::deque<SentTrigger>;

    std::array<Open, 2> m_open;
    QVector<SentTrigger> m_ended;
    std::array<int, 2> m_lastAnswered{-1, -1}; ///< positions in m_ended
    std::array<std::deque<int>, 2> m_toBeNoticed;
    int m_sent = 0;
    int m_strays = 0;
};
