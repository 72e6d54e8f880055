#include "workflow/StationLanes.h"

#include "common/Scheduler.h"
#include "modules/CallWatch.h"

StationLanes::StationLanes(const Scheduler& scheduler)
    : m_scheduler(scheduler)
{
}

void StationLanes::run(int station, qint64 untilNs, std::function<void()> call)
{
    if (!m_scheduler.usesThreads())
        return call();
    Background& lane = station == 1 ? m_first : m_second;
    lane.run(
        [&scheduler = m_scheduler, station, untilNs, call = std::move(call)] {
            CallWatch::setLane(station);
            if (scheduler.elapsedNs() < untilNs)
                call();
            return true;
        },
        [](bool) {});
}
