#pragma once

#include "results/data/PartFilter.h"
#include "results/data/Shifts.h"
#include "workflow/DayCounts.h"

#include <QMap>

/// What a station made of its last parts, hours and shifts. Parts stand in the order in which they came, whatever the
/// clock said; hours and shifts go by the clock of each part. Times are those of PartTable.
class StationTally
{
public:
    static constexpr int partsKept = 50;
    static constexpr int failuresKept = 6;
    static constexpr qint64 hourMs = 3600000;

    struct Hour
    {
        qint64 begin;
        DayCount count;
    };

    /// What is known of the time before the start of the program.
    struct Earlier
    {
        QVector<PartRow> recent;   ///< the newest last
        QVector<PartRow> failures; ///< those with a picture, the newest last
        PartSeries series;         ///< from the beginning of the shift
    };

    void setShifts(const Shifts& shifts) { m_shifts = shifts; }
    const Shifts& shifts() const { return m_shifts; }

    /// Puts earlier parts before those that came since the start; one that both have is counted once.
    void addEarlier(const Earlier& earlier);
    void add(const PartRow& part);
    /// A failure whose picture is at hand. Call it after add().
    void addFailure(const PartRow& part);

    /// The present time: another shift may have begun. Returns whether one has.
    bool setNow(qint64 wall);
    /// The shift's counts begin anew at that moment, which is the present one when it comes from the operator. A moment
    /// that is not of the present shift, or is still to come, changes nothing.
    void reset(qint64 wall);

    /// The newest last.
    const QVector<PartRow>& recent() const { return m_recent; }
    const QVector<PartRow>& failures() const { return m_failures; }
    const Shifts::Shift& shift() const { return m_shift; }
    DayCount shiftCount() const { return m_counts.value(m_shift.begin); }
    /// When the shift's counts were set back; 0: not in this shift.
    qint64 resetAt() const { return m_resets.value(m_shift.begin); }
    /// All of the present shift, those to come as well.
    QVector<Hour> hours() const;

private:
    void count(qint64 wall, PartOutcome outcome);

    Shifts m_shifts;
    Shifts::Shift m_shift;
    qint64 m_now = 0;
    QVector<PartRow> m_recent;
    QVector<PartRow> m_failures;
    QVector<QPair<qint64, PartOutcome>> m_since; ///< of this start, until the earlier ones are known
    bool m_isWhole = false;                      ///< they are
    QMap<qint64, DayCount> m_counts;             ///< by the beginning of the shift
    QMap<qint64, DayCount> m_hours;              ///< by that of the hour
    QMap<qint64, qint64> m_resets;               ///< by that of the shift
};
