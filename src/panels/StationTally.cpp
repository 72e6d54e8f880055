#include "panels/StationTally.h"

#include <algorithm>

namespace {

constexpr int shiftsKept = 4;
constexpr int hoursKept = 72;

void addTo(DayCount& count, PartOutcome outcome)
{
    int DayCount::*const kinds[] = {&DayCount::found, &DayCount::notFound, &DayCount::refused};
    ++(count.*kinds[qBound(0, static_cast<int>(outcome), 2)]);
}

void keepNewest(QVector<PartRow>& parts, int count)
{
    if (parts.size() > count)
        parts.remove(0, parts.size() - count);
}

template <typename Map>
void keepLast(Map& map, int count)
{
    while (map.size() > count)
        map.erase(map.begin());
}

} // namespace

void StationTally::count(qint64 wall, PartOutcome outcome)
{
    addTo(m_hours[wall - wall % hourMs], outcome);
    keepLast(m_hours, hoursKept);
    const qint64 begin = m_shifts.at(wall).begin;
    if (m_isWhole || wall >= m_resets.value(begin))
        addTo(m_counts[begin], outcome);
    keepLast(m_counts, shiftsKept);
}

void StationTally::add(const PartRow& part)
{
    setNow(part.wall);
    m_recent.append(part);
    keepNewest(m_recent, partsKept);
    count(part.wall, part.part.outcome);
    if (!m_isWhole)
        m_since.append({part.wall, part.part.outcome});
}

void StationTally::addFailure(const PartRow& part)
{
    m_failures.append(part);
    keepNewest(m_failures, failuresKept);
}

void StationTally::addEarlier(const Earlier& earlier)
{
    const auto isNew = [this](qint64 wall, PartOutcome outcome) { return !m_since.contains({wall, outcome}); };
    const auto putBefore = [&isNew](const QVector<PartRow>& before, QVector<PartRow>& own, int kept) {
        QVector<PartRow> all;
        std::copy_if(before.begin(), before.end(), std::back_inserter(all),
                     [&isNew](const PartRow& part) { return isNew(part.wall, part.part.outcome); });
        own = all + own;
        keepNewest(own, kept);
    };
    putBefore(earlier.recent, m_recent, partsKept);
    putBefore(earlier.failures, m_failures, failuresKept);
    m_counts.clear(); // the shifts may not have been known yet
    m_hours.clear();
    const PartSeries& series = earlier.series;
    for (int i = 0; i < series.size(); ++i) {
        if (const auto outcome = PartOutcome(series.outcome[i]); isNew(series.wall[i], outcome))
            count(series.wall[i], outcome);
    }
    for (const auto& [wall, outcome] : qAsConst(m_since))
        count(wall, outcome);
    m_since.clear();
    m_isWhole = true;
}

bool StationTally::setNow(qint64 wall)
{
    m_now = wall;
    const Shifts::Shift shift = m_shifts.at(wall);
    const bool changed = shift.begin != m_shift.begin || shift.end != m_shift.end;
    m_shift = shift;
    return changed;
}

void StationTally::reset(qint64 wall)
{
    if (wall < m_shift.begin || wall > m_now)
        return;
    m_counts[m_shift.begin] = {};
    m_resets[m_shift.begin] = wall;
    keepLast(m_resets, shiftsKept);
}

QVector<StationTally::Hour> StationTally::hours() const
{
    QVector<Hour> hours;
    for (qint64 begin = m_shift.begin - m_shift.begin % hourMs; begin < m_shift.end; begin += hourMs)
        hours.append({begin, m_hours.value(begin)});
    return hours;
}
