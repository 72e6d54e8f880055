#pragma once

#include "db/SqlBuilder.h"
#include "db/SqliteFile.h"

#include <QObject>

#include <functional>
#include <memory>

class Scheduler;
class WalKeeper;

/// Owns the connection to a database of results and runs the statements of SqlBuilder on it. Returns false on failure;
/// lastError() says why. The thread that opens it uses it (the GUI thread); nothing here waits longer than the disk
/// takes for one row.
class DataBaseSql : public QObject
{
    Q_OBJECT

public:
    /// `driverType` is "QSQLITE", or "QMYSQL", which is known by name only.
    DataBaseSql(const QString& path, const QString& driverType, QObject* parent = nullptr);
    ~DataBaseSql() override;

    /// Before open(). By default a row is flushed to the disk within a tenth of a second, and insert() does not wait.
    void setDurability(SqliteFile::Durability durability) { m_rules.durability = durability; }

    /// Before open(): whose time and threads bring the rows to the disk; the system's by default.
    void setScheduler(Scheduler& scheduler) { m_scheduler = &scheduler; }

    /// Before the first row: what brings the write-ahead log to the disk, on a thread of its own.
    void setFlush(std::function<bool(const QString&)> flush) { m_flush = std::move(flush); }

    /// Opens the database when it is not open. A damaged, foreign or read-only file is kept aside (see openReport()).
    bool open();
    void close();
    bool isOpen() const { return m_connection.isOpen(); }

    /// True when only closing and opening anew can help: the file is damaged, read-only or gone.
    bool needsReopening() const;

    QString path() const { return m_connection.database().databaseName(); }

    /// In ascending order.
    QStringList tableList();

    /// With `keyColumn` as a key that counts up by itself, and the other columns in ascending order.
    bool createTable(const QString& table, const QString& keyColumn, const SqlValueMap& columns);

    /// False for an empty name or map, and for values that a statement cannot carry.
    bool insert(const QString& table, const SqlValueMap& values);

    /// Kept as earlier versions had it: it changes the row with uid 0, and only in a file that has e_report_forms.
    bool update(const QString& table, const SqlValueMap& values);

    /// Deletes all rows of the table; the second text only must not be empty.
    bool clear(const QString& table, const QString& text);

    /// What happened at the last open(); its text has been written as a warning.
    const SqliteFile::OpenReport& openReport() const { return m_openReport; }
    QString lastError() const { return m_connection.lastError().text(); }

protected:
    Scheduler& scheduler() const { return *m_scheduler; }
    SqlConnection& connection() { return m_connection; }
    bool succeeded() const { return !m_connection.failed(); }

    /// To be called after every commit, so that the log is moved into the file in time.
    void committed();

    /// Makes the table when none has its name, in whatever case, and then its index over the time when wanted.
    void ensureTable(const QStringList& present, const QString& table, const SqlValueMap& columns, bool timeIndex);

private:
    const QString m_driverType;
    Scheduler* m_scheduler;
    SqliteFile::OpenRules m_rules;
    SqliteFile::OpenReport m_openReport;
    SqlConnection m_connection;
    QSqlQuery m_lastInsert;
    std::function<bool(const QString&)> m_flush;
    std::unique_ptr<WalKeeper> m_keeper;
};
