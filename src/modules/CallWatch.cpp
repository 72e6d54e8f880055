#include "modules/CallWatch.h"

#include "common/Scheduler.h"

namespace {
constexpr qint64 nsInMs = 1000 * 1000;
thread_local int laneOfThread = 0; ///< 0: the GUI thread's
} // namespace

CallWatch::CallWatch(const Scheduler& scheduler, Limit limit, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_limit(std::move(limit))
{
}

CallWatch::Running::Running(CallWatch& watch, const char* name, Promise promise)
    : m_watch(watch)
    , m_lane(watch.ownLane())
    , m_name(name)
    , m_startNs(watch.m_scheduler.elapsedNs())
    , m_outer(m_lane.name.exchange(name))
    , m_outerDueNs(m_lane.dueNs.exchange(promise == Takes ? never : m_startNs + watch.m_limit() * nsInMs))
{
    m_step.emplace(name);
}

CallWatch::Running::~Running()
{
    const qint64 now = m_watch.m_scheduler.elapsedNs();
    const qint64 due = m_lane.dueNs.exchange(m_outerDueNs);
    m_lane.name = m_outer;
    m_step.reset(); // what a report sets off is no part of it
    if (due == logged || (due != never && now > due))
        m_watch.reportLate(m_name, now - m_startNs);
}

void CallWatch::setLane(int station)
{
    laneOfThread = station;
}

CallWatch::Lane& CallWatch::ownLane()
{
    return m_lanes[laneOfThread];
}

void CallWatch::look()
{
    const qint64 now = m_scheduler.elapsedNs();
    for (int station = 0; station <= 2; ++station) {
        Lane& lane = m_lanes[station];
        qint64 due = lane.dueNs;
        const char* const name = lane.name;
        if (due < 0 || now <= due || !lane.dueNs.compare_exchange_strong(due, logged))
            continue;
        if (station == 0) {
            qWarning("module %s has not returned in time, and holds up the program", name);
        } else {
            qWarning("module %s has not returned in time, and holds up station %d", name, station);
            emit broken(QString::fromLatin1(name), tr("没有返回，工位%1被占用").arg(station));
        }
    }
}

void CallWatch::reportThrown(const char* name, const char* what)
{
    qWarning("module %s threw: %s", name, what);
    emit broken(QString::fromLatin1(name), tr("抛出异常 %1").arg(QString::fromUtf8(what)));
}

void CallWatch::reportLate(const char* name, qint64 ns)
{
    const qint64 ms = ns / nsInMs;
    qWarning("module %s took %lld ms", name, static_cast<long long>(ms));
    emit broken(QString::fromLatin1(name), laneOfThread == 0
                                               ? tr("耗时 %1 毫秒，程序被占用").arg(ms)
                                               : tr("耗时 %1 毫秒，工位%2被占用").arg(ms).arg(laneOfThread));
}
