#include "modules/CallWatch.h"

#include "common/Scheduler.h"

namespace {
constexpr qint64 nsInMs = 1000 * 1000;
}

CallWatch::CallWatch(const Scheduler& scheduler, Limit limit, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_limit(std::move(limit))
{
}

CallWatch::Running::Running(CallWatch& watch, const char* name, Promise promise)
    : m_watch(watch)
    , m_name(name)
    , m_startNs(watch.m_scheduler.elapsedNs())
    , m_outer(watch.m_name.exchange(name))
    , m_outerDueNs(watch.m_dueNs.exchange(promise == Takes ? never : m_startNs + watch.m_limit() * nsInMs))
{
    m_step.emplace(name);
}

CallWatch::Running::~Running()
{
    const qint64 now = m_watch.m_scheduler.elapsedNs();
    const qint64 due = m_watch.m_dueNs.exchange(m_outerDueNs);
    m_watch.m_name = m_outer;
    m_step.reset(); // what a report sets off is no part of it
    if (due == logged || (due != never && now > due))
        m_watch.reportLate(m_name, now - m_startNs);
}

void CallWatch::look()
{
    qint64 due = m_dueNs;
    const char* const name = m_name;
    if (due < 0 || m_scheduler.elapsedNs() <= due || !m_dueNs.compare_exchange_strong(due, logged))
        return;
    qWarning("module %s has not returned in time, and holds up the program", name);
}

void CallWatch::reportThrown(const char* name, const char* what)
{
    qWarning("module %s threw: %s", name, what);
    emit broken(QString::fromLatin1(name), tr("抛出异常 %1").arg(QString::fromUtf8(what)));
}

void CallWatch::reportLate(const char* name, qint64 ns)
{
    qWarning("module %s took %lld ms", name, static_cast<long long>(ns / nsInMs));
    emit broken(QString::fromLatin1(name), tr("耗时 %1 毫秒，程序被占用").arg(ns / nsInMs));
}
