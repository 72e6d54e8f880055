#pragma once

#include "db/ClockGuard.h"
#include "db/log/LogLine.h"

#include <QCoreApplication>

#include <atomic>

class SqlConnection;

/// Deletes the rows of a table that are older than so many days, a few at a time, on the thread that writes the table:
/// so a row to be written waits for a step of some milliseconds at most, and never for a lock. Whole days get old at
/// midnight; when they are gone, a line of the system log says how many rows of which days went. Nothing is deleted
/// after the clock was set by minutes, until it is accepted.
///
/// The file keeps its size: new rows fill the pages that old ones leave. Giving them back would move pages, in one long
/// transaction or in each short one.
class RowThinner
{
    Q_DECLARE_TR_FUNCTIONS(RowThinner)

public:
    /// `time` is a column of local times that begin with "yyyy-MM-dd", with an index.
    struct Table
    {
        QString name;
        QString key;
        QString time;
    };
    static constexpr int msWhenIdle = 60000; ///< between two looks when nothing is old
    static constexpr int msWhenHeld = 1000;  ///< and after a step that failed
    static constexpr int msBetweenSteps = 100;
    static constexpr int mostRows = 50; ///< of a step; fewer when these take too long

    /// `scheduler` outlives it.
    RowThinner(Table table, const Scheduler& scheduler);
    /// What went is logged at the latest now.
    ~RowThinner();

    /// Rows of that many days and of today stay; 0: all do. Any thread.
    void setDays(int days) { m_days = days; }
    /// Any thread.
    ClockGuard& clock() { return m_clock; }

    struct Step
    {
        int rows = 0;   ///< that went
        int nextMs = 0; ///< the next step is due then
    };
    /// On the thread that uses the connection, which is open. It waits for no other program.
    Step step(SqlConnection& connection);

private:
    struct Gone
    {
        int rows = 0;
        int days = 0; ///< the limit
        QString file;
        QString first;
        QString last;
    };

    int deleteSome(SqlConnection& connection, const QString& before);
    void adapt(qint64 tookNs);
    void logGone();

    const Table m_table;
    const Scheduler& m_scheduler;
    ClockGuard m_clock;
    std::atomic<int> m_days{0};
    int m_rows = mostRows;
    Gone m_gone;
    FaultNotice m_fault;
};
