#pragma once

#include "db/RowThinner.h"
#include "db/SqliteStore.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QStringList>
#include <QThread>

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

    /// Opens for writing, with the table, when it is not open; see SqliteStore.
    bool open() { return m_store.open(); }
    bool openForReading();
    void close() { m_store.close(); }

    SqliteStore& store() { return m_store; }

private:
    SqliteStore m_store;
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

    /// Stops after the pass in hand; lines that still wait are lost. A line that the file does not take for the moment
    /// waits.
    ~ksLogDB() override;

    /// Before start(): milliseconds between passes, at least 1; 10 by default.
    void setPause(int milliseconds) { m_pauseMs = qMax(1, milliseconds); }
    void setLimits(const Limits& limits) { m_limits = limits; }

    /// Which lines stay, and when none goes, see RowThinner; all stay until its setDays(). Any thread.
    RowThinner& thinner() { return m_thinner; }

    /// Puts a line at the end of the queue. Any thread; never waits for the database.
    void append(int type, const char* message, int length);

    /// Lines that wait. Any thread.
    int waiting() const;

    /// Under which names files that could not be used were kept, the first at the start. Any thread.
    QStringList movedAside() const;

    /// As start(), also after a stop().
    void startAgain();

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

    enum class Next { Line, Pause, End };
    /// Waits for a line, unless a pause comes first.
    Next nextEntry(Entry* entry, int pauseMs);
    void write(Entry entry);
    /// Returns when to do it again, milliseconds.
    int thin();
    /// To the front of the queue, when the file may take it later.
    void putBack(Entry entry);
    bool lossIsDue();
    bool pauseUnlessStopped(int ms);

    const QString m_path;
    int m_pauseMs = 10;
    Limits m_limits;
    std::unique_ptr<QDBSqlite> m_database; ///< of the thread that writes
    RowThinner m_thinner;
    FaultNotice m_faultAtStart;

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
