#include "workflow/DayCounts.h"

#include "common/Scheduler.h"
#include "workflow/ResultHandler.h"

double DayCount::yield() const
{
    const int judged = found + notFound;
    return judged > 0 ? 100.0 * found / judged : -1.0;
}

DayCounts::DayCounts(const Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_day(scheduler.now().date())
{
}

void DayCounts::addEarlier(const QDate& day, int station, const DayCount& count)
{
    checkDay();
    if (day != m_day || station < 1 || station > 2)
        return;
    DayCount& own = m_counts[station - 1];
    own.found += count.found;
    own.notFound += count.notFound;
    own.refused += count.refused;
    emit changed(station);
}

void DayCounts::onReading(int station, const StationReading& reading)
{
    if (!reading.test)
        count(station, reading.found ? &DayCount::found : &DayCount::notFound);
}

void DayCounts::onRefused(int station)
{
    count(station, &DayCount::refused);
}

void DayCounts::count(int station, int DayCount::*kind)
{
    checkDay();
    if (station < 1 || station > 2)
        return;
    ++(m_counts[station - 1].*kind);
    emit changed(station);
}

void DayCounts::checkDay()
{
    const QDate today = m_scheduler.now().date();
    if (today == m_day)
        return;
    m_day = today;
    for (int station = 1; station <= 2; ++station) {
        m_counts[station - 1] = {};
        emit changed(station);
    }
}
