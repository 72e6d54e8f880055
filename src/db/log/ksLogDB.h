#pragma once

#include "db/SqliteFile.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QStringList>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

namespace SystemLog {

/// One connection to the log's database, for the thread that opens it.
class QDBSqlite
{
public:
    explicit QDBSqlite(const QString& path = QStringLiteral("dbLog.db"), const QString& user = QString(),
                       const QString& password = QString());

    /// Opens for writing when it is not open. A damaged file is kept aside and a fresh one begun.
    bool open();
    bool openForReading();
    void close();

    SqlConnection& connection() { return m_connection; }
    const SqliteFile::OpenReport& openReport() const { return m_openReport; }

private:
    SqlConnection m_connection;
    SqliteFile::OpenReport m_openReport;
};

/// Writes log lines into table SystemInfo from a queue, on a thread of its own: at most one row a pass, with a pause
/// between passes, so that a burst waits in the queue and never on the disk.
class ksLogDB : public QThread
{
    Q_OBJECT

public:
    struct Limits
    {
        std::size_t lines = 100000;              ///< that may wait; beyond, the oldest go
        std::size_t bytes = 64U * 1024U * 1024U; ///< of their texts
    };

    /// Opens the file and makes the table; start() begins to write.
    explicit ksLogDB(const QString& path = QStringLiteral("dbLog.db"));

    /// Stops after the pass in hand; lines that still wait are lost.
    ~ksLogDB() override;

    /// Before start(): milliseconds between passes, at least 1; 10 by default.
    void setPause(int milliseconds) { m_pauseMs = qMax(1, milliseconds); }
    void setLimits(const Limits& limits) { m_limits = limits; }

    /// Puts a line at the end of the queue. Any thread; never waits for the database.
    void append(int type, const char* message, int length);

    /// Lines that wait. Any thread.
    int waiting() const;

    /// Under which names files that could not be used were kept, the first at the start. Any thread.
    QStringList movedAside() const;

    /// Stops the thread after the pass in hand, and waits for it. Idempotent.
    void stop();

    /// One row, with the message as it stands: one that holds an apostrophe fails. For the thread that writes; before
    /// start(), for the caller's.
    bool insert(int type, const QString& message);

    /// Times and messages of one type from the first day to the last ("yyyy-MM-dd"), both included, except for the
    /// first and the last second; empty when they cannot be read. Any thread: it opens a connection of its own.
    QList<QPair<QString, QString>> query(const QString& fromDay, const QString& toDay, int type) const;

protected:
    void run() override;

private:
    struct Entry
    {
        QByteArray message;
        int type = 0;
    };

    bool openTable();
    bool openAgain();
    bool nextEntry(Entry* entry);
    bool lossIsDue();
    bool pauseUnlessStopped();

    const QString m_path;
    int m_pauseMs = 10;
    Limits m_limits;
    std::unique_ptr<QDBSqlite> m_database; ///< of the thread that writes, as are the next two
    QString m_reported;                    ///< the last trouble with the file
    std::chrono::steady_clock::time_point m_lastOpen;

    mutable std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_lineCame;
    std::condition_variable m_stopped;
    QStringList m_movedAside;
    std::deque<Entry> m_queue;
    std::size_t m_bytes = 0;      ///< of the texts in m_queue
    std::size_t m_lost = 0;       ///< lines that went since the last line that said so
    std::size_t m_lostBefore = 0; ///< m_lost at the pass before
    int m_passesInLoss = 0;
    bool m_stop = false;
};

} // namespace SystemLog
