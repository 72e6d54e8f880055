#pragma once

#include "common/Background.h"
#include "common/Scheduler.h"

#include <QObject>

class ExportProgress;

/// Has the report of each shift or day, as ShiftConfig says, written soon after its end (see ReportRound), also those
/// that were missed while the program was off. Reading, computing and writing go on a thread, unless the scheduler has
/// none.
class ReportSchedule : public QObject
{
    Q_OBJECT

public:
    ReportSchedule(QString home, Scheduler& scheduler, QObject* parent = nullptr);
    ~ReportSchedule() override;

    /// The first look is some time away: the start has better to do.
    void start();
    /// Looks what is due, from now on again and again; also when settings have changed.
    void check();

signals:
    void written(const QStringList& paths);
    /// Why a report is not written, for the operator; empty when it is over. Logged, too.
    void alarmChanged(const QString& text);

private:
    struct Done;
    void finish(const Done& done);

    static constexpr int lookMs = 30000;
    static constexpr int retryMs = 300000;

    const QString m_home;
    Scheduler& m_scheduler;
    QString m_alarm;
    bool m_busy = false;
    bool m_again = false; ///< asked for while one is on
    const std::shared_ptr<ExportProgress> m_progress;
    const std::unique_ptr<Scheduler::Timer> m_next;
    Background m_background;
};
