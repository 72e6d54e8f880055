#include "db/WalKeeper.h"

#include "db/SqlConnection.h"
#include "platform/System.h"

#include <QVariant>

#include <chrono>

namespace {

/// Between two flushes: one flush serves all rows of a burst.
constexpr std::chrono::milliseconds pause(50);

/// The first row after the log was moved costs the writer a flush, so it is moved seldom: about every 12 MB.
constexpr int commitsARound = 1000;

/// 64 MiB of log: rows then come in faster than they are moved, and the log starts anew only when the writer waits.
constexpr int framesTooMany = 16384;

} // namespace

WalKeeper::WalKeeper(const QString& path)
    : m_path(path)
    , m_thread(&WalKeeper::run, this)
{
}

/// The thread flushes what is left before it ends.
WalKeeper::~WalKeeper()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void WalKeeper::committed()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_commits;
    }
    m_changed.notify_one();
}

int WalKeeper::flushed() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_flushed;
}

/// Returns false when there is nothing left to do.
bool WalKeeper::flushNext()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_stop || m_commits > m_flushed; });
    const int commits = m_commits;
    if (commits == m_flushed)
        return false;
    lock.unlock();
    platform::flushFile(m_path + QStringLiteral("-wal"));
    lock.lock();
    m_inLog += commits - m_flushed;
    m_flushed = commits;
    return true;
}

void WalKeeper::moveLog()
{
    SqlConnection connection(QStringLiteral("QSQLITE"));
    connection.database().setDatabaseName(m_path);
    connection.database().setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    if (!connection.database().open())
        return;
    QSqlQuery passive = connection.exec(QStringLiteral("PRAGMA wal_checkpoint(PASSIVE)"));
    constexpr int framesInLog = 1;
    constexpr int framesMoved = 2;
    if (!passive.next() || passive.value(framesMoved).toInt() <= 0)
        return; // another program held the file: the next flush tries again
    const bool tooLong = passive.value(framesInLog).toInt() > framesTooMany;
    passive.finish();
    if (tooLong)
        connection.exec(QStringLiteral("PRAGMA wal_checkpoint(RESTART)"));
    m_inLog = 0;
}

void WalKeeper::run()
{
    while (flushNext()) {
        if (m_inLog >= commitsARound)
            moveLog();
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, pause, [this] { return m_stop; });
    }
}
