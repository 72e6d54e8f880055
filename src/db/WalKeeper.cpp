#include "db/WalKeeper.h"

#include "db/SqlConnection.h"

#include <QFile>
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

WalKeeper::WalKeeper(const QString& path, Flush flush, Scheduler& scheduler)
    : m_path(path)
    , m_flush(std::move(flush))
{
    if (scheduler.usesThreads())
        m_thread = std::thread(&WalKeeper::run, this);
    else
        m_flushHere = scheduler.timer(Scheduler::SingleShot, [this] { flushHere(); });
}

/// The thread flushes what is left before it ends.
WalKeeper::~WalKeeper()
{
    if (!m_thread.joinable()) {
        flushHere();
        return;
    }
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
    if (m_flushHere && !m_flushHere->isActive())
        m_flushHere->start(static_cast<int>(pause.count()));
    m_changed.notify_one();
}

/// A log that another program kept from being moved is tried again, also when no further row comes.
bool WalKeeper::flushNext()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto isDue = [this] { return m_stop || m_commits > m_flushed; };
    if (m_inLog >= commitsARound)
        m_changed.wait_for(lock, pause, isDue);
    else
        m_changed.wait(lock, isDue);
    const int commits = m_commits;
    const bool last = m_stop;
    if (commits == m_flushed && last)
        return false;
    lock.unlock();
    if (commits > m_flushed)
        flush(commits);
    else
        moveLog();
    return !(last && m_fault.lasts());
}

/// A log that is gone holds nothing; what could not be flushed is tried again.
void WalKeeper::flush(int commits)
{
    const QString log = m_path + QStringLiteral("-wal");
    if (!m_flush(log) && QFile::exists(log)) {
        m_fault.failed(tr("%1 写入磁盘失败，断电会丢失最近的记录，请检查磁盘").arg(log));
        return;
    }
    m_fault.over(tr("%1 又能写入磁盘，期间失败%2次").arg(log, QStringLiteral("%1")));
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_inLog += commits - m_flushed;
        m_flushed = commits;
    }
    if (m_inLog >= commitsARound)
        moveLog();
}

void WalKeeper::flushHere()
{
    if (m_commits > m_flushed)
        flush(m_commits);
    else if (m_inLog >= commitsARound)
        moveLog();
    if (m_flushHere && (m_inLog >= commitsARound || m_fault.lasts()))
        m_flushHere->start(static_cast<int>(pause.count()));
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
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, pause, [this] { return m_stop; });
    }
}
