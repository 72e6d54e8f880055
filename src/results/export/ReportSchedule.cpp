#include "results/export/ReportSchedule.h"

#include "db/PartTable.h"
#include "db/log/LogLine.h"
#include "results/export/ExportProgress.h"
#include "results/export/ReportRound.h"

struct ReportSchedule::Done
{
    ReportRound::Result result;
};

ReportSchedule::ReportSchedule(QString home, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_home(std::move(home))
    , m_scheduler(scheduler)
    , m_progress(std::make_shared<ExportProgress>())
    , m_next(scheduler.timer(Scheduler::SingleShot, [this] { check(); }))
    , m_background(Background::AtEnd::Wait)
{
}

/// What it breaks off is written at the next start.
ReportSchedule::~ReportSchedule()
{
    m_progress->cancel();
}

void ReportSchedule::start()
{
    m_next->start(lookMs);
}

void ReportSchedule::check()
{
    m_again = m_busy;
    if (m_busy)
        return;
    m_busy = true;
    m_next->stop();
    const auto work = [home = m_home, now = PartTable::wallOf(m_scheduler.now()), progress = m_progress] {
        return Done{ReportRound::run(home, now, *progress)};
    };
    if (m_scheduler.usesThreads())
        m_background.run(work, [this](const Done& done) { finish(done); });
    else
        finish(work());
}

void ReportSchedule::finish(const Done& done)
{
    m_busy = false;
    m_next->start(m_again ? 0 : done.result.error.isEmpty() ? lookMs : retryMs);
    if (!done.result.written.isEmpty())
        emit written(done.result.written);
    if (done.result.error == m_alarm)
        return;
    m_alarm = done.result.error;
    if (!m_alarm.isEmpty())
        SystemLog::warning(m_alarm);
    emit alarmChanged(m_alarm);
}
