#pragma once

#include <QString>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// Brings committed rows to the disk on a thread of its own, so that the thread that inserts never waits for it:
/// flushes the write-ahead log within a tenth of a second, and from time to time moves it into the database file, over
/// a connection of its own that writes no row and waits for no reader.
class WalKeeper
{
public:
    /// Brings what was written to a file to the disk; false when that fails.
    using Flush = std::function<bool(const QString& path)>;

    /// Starts the thread, which is the one that calls `flush`.
    WalKeeper(const QString& path, Flush flush);

    /// Flushes what was committed.
    ~WalKeeper();

    /// Tells that a row was committed. Any thread; returns at once.
    void committed();

private:
    void run();
    bool flushNext();
    /// Does not wait for a program that holds the file; the next flush tries again.
    void moveLog();

    const QString m_path;
    const Flush m_flush;
    int m_inLog = 0;    ///< of the thread: commits since the log was moved
    std::mutex m_mutex; ///< guards m_commits, m_flushed, m_stop
    std::condition_variable m_changed;
    int m_commits = 0;
    int m_flushed = 0;
    bool m_stop = false;
    std::thread m_thread;
};
