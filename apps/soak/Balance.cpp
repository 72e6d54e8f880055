#include "Balance.h"

#include <QDateTime>

#include <cmath>

namespace {

constexpr int maxExamples = 20;
/// A frame carries thousandths, cut off.
constexpr double cutOff = 0.0011;

QString timeText(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
}

QString valuesText(const PlcFrames::Answer& values)
{
    return QStringLiteral("%1 (%2, %3)").arg(values.angle).arg(values.x).arg(values.y);
}

bool isSame(const PlcFrames::Answer& a, const PlcFrames::Answer& b)
{
    const bool special = a.angle >= PlcFrames::firstNoAngle || b.angle >= PlcFrames::firstNoAngle;
    const double turn = special ? a.angle - b.angle : std::remainder(a.angle - b.angle, 360.0);
    return std::abs(turn) < cutOff && std::abs(a.x - b.x) < cutOff && std::abs(a.y - b.y) < cutOff;
}

/// Lays the triggers and the rows of one station side by side.
class Alignment
{
public:
    Alignment(QVector<SentTrigger> triggers, QVector<RecordedRow> rows, Balance& balance)
        : m_triggers(std::move(triggers))
        , m_rows(std::move(rows))
        , m_balance(balance)
    {
    }

    void run()
    {
        while (m_trigger < m_triggers.size() || m_row < m_rows.size())
            step();
    }

private:
    void step()
    {
        if (m_trigger == m_triggers.size())
            return strangeRow();
        const SentTrigger& trigger = m_triggers[m_trigger];
        if (m_row == m_rows.size())
            return withoutRow(trigger);
        const RecordedRow& row = m_rows[m_row];
        if (row.timeMs < trigger.sentMs)
            return strangeRow();
        // After a kill images begin anew, so that the next answer may be the same as one that lost its row.
        const bool anothers = (!trigger.answer || trigger.mayLackRow) && belongsToNextAnswer(row);
        const bool own = !anothers && (!trigger.answer || isSame(*trigger.answer, row.sent));
        if (!own)
            return withoutRow(trigger);
        ++(trigger.answer ? m_balance.rowsOfAnswers : m_balance.rowsOfGaps);
        ++m_trigger;
        ++m_row;
    }

    /// What the program made of a trigger in a gap nobody knows, so its row is known by not being another's.
    bool belongsToNextAnswer(const RecordedRow& row) const
    {
        for (int i = m_trigger + 1; i < m_triggers.size(); ++i)
            if (m_triggers[i].answer)
                return row.timeMs >= m_triggers[i].sentMs && isSame(*m_triggers[i].answer, row.sent);
        return false;
    }

    void withoutRow(const SentTrigger& trigger)
    {
        ++m_trigger;
        if (!trigger.answer)
            return;
        if (trigger.mayLackRow) {
            ++m_balance.lostByKill;
            return;
        }
        ++m_balance.lostRows;
        example(QStringLiteral("no row of the answer %1 of station %2 to the trigger of %3")
                    .arg(valuesText(*trigger.answer))
                    .arg(trigger.station)
                    .arg(timeText(trigger.sentMs)));
    }

    void strangeRow()
    {
        const RecordedRow& row = m_rows[m_row++];
        ++m_balance.strangeRows;
        example(QStringLiteral("the row %1 of station %2 of %3 belongs to no answer")
                    .arg(valuesText(row.sent))
                    .arg(row.station)
                    .arg(timeText(row.timeMs)));
    }

    void example(const QString& text)
    {
        if (m_balance.examples.size() < maxExamples)
            m_balance.examples << text;
    }

    const QVector<SentTrigger> m_triggers;
    const QVector<RecordedRow> m_rows;
    Balance& m_balance;
    int m_trigger = 0;
    int m_row = 0;
};

void count(const SentTrigger& trigger, Balance& balance)
{
    if (trigger.gap != Gap::None) {
        ++(trigger.gap == Gap::Killed ? balance.killed : balance.cut);
        return;
    }
    if (!trigger.answer) {
        ++balance.unanswered;
        balance.examples << QStringLiteral("the trigger of station %1 of %2 was never answered")
                                .arg(trigger.station)
                                .arg(timeText(trigger.sentMs));
        return;
    }
    ++balance.answered;
    const bool refused = trigger.answer->angle == PlcFrames::refusedAngle;
    ++(!trigger.needsNotice() ? balance.found : refused ? balance.refused : balance.nothing);
    balance.unnoticed += trigger.needsNotice() && !trigger.noticed;
}

} // namespace

Balance Balance::of(const TriggerLedger& ledger, const QVector<RecordedRow>& rows)
{
    Balance balance;
    balance.strays = ledger.strays();
    const QVector<SentTrigger> triggers = ledger.all();
    for (const SentTrigger& trigger : triggers)
        count(trigger, balance);
    for (int station = 1; station <= 2; ++station) {
        const auto isOfStation = [station](const auto& each) { return each.station == station; };
        QVector<SentTrigger> own;
        QVector<RecordedRow> ownRows;
        std::copy_if(triggers.begin(), triggers.end(), std::back_inserter(own), isOfStation);
        std::copy_if(rows.begin(), rows.end(), std::back_inserter(ownRows), isOfStation);
        Alignment(std::move(own), std::move(ownRows), balance).run();
    }
    for (const RecordedRow& row : rows)
        balance.strangeRows += row.station != 1 && row.station != 2;
    return balance;
}
