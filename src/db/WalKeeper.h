#pragma once

#include "common/Scheduler.h"
#include "db/log/LogLine.h"

#include <QCoreApplication>
#include <QString>

#include <condition_variable>
#include <mutex>
#include <thread>

/// Brings committed rows to the disk on a thread of its own, so that the thread that inserts never waits for it:
/// flushes the write-ahead log within a tenth of a second, and from time to time moves it into the database file, over
/// a connection of its own that writes no row and waits for no reader. A flush that fails is logged once and tried
/// again.
class WalKeeper
{
    Q_DECLARE_TR_FUNCTIONS(WalKeeper)

public:
    /// Brings what was written to a file to the disk; false when that fails.
    using Flush = std::function<bool(const QString& path)>;

    /// Starts the thread, which calls `flush`. Where there are to be none, a timer of the scheduler does its work.
    WalKeeper(const QString& path, Flush flush, Scheduler& scheduler);

    /// Flushes what was committed.
    ~WalKeeper();

    /// A row was committed. Any thread; returns at once.
    void committed();

private:
    void run();
    /// Waits for a commit and flushes it; false when there is nothing left to do.
    bool flushNext();
    /// The log to the disk, with so many commits in all.
    void flush(int commits);
    void flushHere();
    /// Does not wait for a program that holds the file; the next flush tries again.
    void moveLog();

    const QString m_path;
    const Flush m_flush;
    int m_inLog = 0;     ///< of the thread: commits since the log was moved
    FaultNotice m_fault; ///< of the thread
    std::mutex m_mutex;  ///< guards m_commits, m_flushed, m_stop
    std::condition_variable m_changed;
    int m_commits = 0;
    int m_flushed = 0;
    bool m_stop = false;
    std::unique_ptr<Scheduler::Timer> m_flushHere; ///< null where the thread flushes
    std::thread m_thread;
};
