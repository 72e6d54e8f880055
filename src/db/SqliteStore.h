#pragma once

#include "common/Scheduler.h"
#include "db/SqliteFile.h"
#include "db/log/LogLine.h"

#include <functional>

/// Keeps one SQLite file in use, whatever happens to it: opens it, makes its tables, and does both again, with pauses
/// that grow, while the file is locked, cannot be written or has no room. A file that proves damaged or read-only when
/// a statement runs is opened anew, and put aside for a fresh one when that did not help. Trouble is logged when it
/// begins and when it is over. The thread that opens it uses it; an attempt takes it a few milliseconds.
class SqliteStore
{
public:
    static constexpr int firstPauseMs = 100;     ///< between two attempts to open the file
    static constexpr int longestPauseMs = 10000; ///< each pause is twice the one before, up to this

    /// A driver other than SQLite's is known by name only: its statements fail.
    SqliteStore(const QString& path, SqliteFile::OpenRules rules,
                const QString& driverType = QStringLiteral("QSQLITE"));

    ~SqliteStore();

    /// True when the file is open with all its tables. Otherwise tries to open it, when the pause is over.
    bool open();
    /// Until the next open() every statement fails.
    void close();
    bool isOpen() const { return m_connection.isOpen(); }

    /// Runs statements, opening the file as open() does. They return false, and the connection has the error, when they
    /// failed; they are run once more when opening the file anew, or beginning a fresh one, may have helped.
    bool run(const std::function<bool(SqlConnection&)>& statements);
    /// One statement; see SqlConnection::exec().
    QSqlQuery exec(const QString& sql);

    bool failed() const { return m_connection.failed(); } ///< the last statement
    /// Whether the last statement failed for what may pass without a change of the statement.
    bool mayPass() const;
    /// Why the last statement failed, or why there is no file; empty when it succeeded.
    QString lastError() const;

    SqlConnection& connection() { return m_connection; }
    const SqlConnection& connection() const { return m_connection; }
    SqliteFile::OpenRules& rules() { return m_rules; } ///< to be changed before open()
    void setScheduler(Scheduler& scheduler) { m_scheduler = &scheduler; }

    /// What happened at the last attempt to open the file.
    const SqliteFile::OpenReport& openReport() const { return m_report; }
    /// Under which names files that could not be used were kept, since the start.
    const QStringList& keptAside() const { return m_keptAside; }
    /// Trouble that another store of the file has begun to log, for this one to log the end of.
    FaultNotice fault() const { return m_fault; }
    void goOnWith(const FaultNotice& fault) { m_fault = fault; }
    /// How often the file was opened; whoever keeps what it read reads anew when this has changed.
    int openings() const { return m_openings; }

private:
    QString path() const { return m_connection.database().databaseName(); }
    bool needsReopening() const;
    void disconnect();
    bool reopen(const SqliteFile::Unfit& unfit = {});
    void logReport();

    const bool m_isFile;
    SqliteFile::OpenRules m_rules;
    Scheduler* m_scheduler = &Scheduler::system();
    SqlConnection m_connection;
    SqliteFile::OpenReport m_report;
    FaultNotice m_fault;
    QStringList m_keptAside;
    quint64 m_identity = 0; ///< of the file that is open
    quint64 m_logIdentity = 0;
    qint64 m_nextAttemptNs = 0;
    int m_pauseMs = 0; ///< 0: the next attempt is due at once
    int m_openings = 0;
    bool m_wanted = false; ///< between open() and close()
};
