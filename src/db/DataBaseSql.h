#pragma once

#include "db/SqlBuilder.h"
#include "db/SqliteStore.h"

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
    void setDurability(SqliteFile::Durability durability) { m_store.rules().durability = durability; }

    /// Before open(): whose time and threads bring the rows to the disk; the system's by default.
    void setScheduler(Scheduler& scheduler);

    /// Before the first row: what brings the write-ahead log to the disk, on a thread of its own.
    void setFlush(std::function<bool(const QString&)> flush) { m_flush = std::move(flush); }

    /// Opens the database when it is not open, and makes the tables that are missing; see SqliteStore. A statement does
    /// it again when it has to.
    bool open() { return m_store.open(); }
    void close();
    bool isOpen() const { return m_store.isOpen(); }

    QString path() const { return m_store.connection().database().databaseName(); }

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

    /// What happened at the last open(); its text has been logged.
    const SqliteFile::OpenReport& openReport() const { return m_store.openReport(); }
    const QStringList& keptAside() const { return m_store.keptAside(); }
    QString lastError() const { return m_store.lastError(); }

protected:
    Scheduler& scheduler() const { return *m_scheduler; }
    SqliteStore& store() { return m_store; }
    bool succeeded() const { return !m_store.failed(); }
    /// The key of the row that insert() made last.
    qint64 lastInsertId() const { return m_lastInsert.lastInsertId().toLongLong(); }

    /// To be called after every commit, so that the log is moved into the file in time.
    void committed();

    struct Table
    {
        QString name;
        SqlValueMap columns; ///< besides the key "uid"
        bool timeIndex;      ///< an index over the time is made with it
    };
    /// Those that the file is to have; makes each whose name, in whatever case, is missing.
    virtual QVector<Table> tables() const { return {}; }
    /// Statements that make what else is missing, in the same transaction.
    virtual QStringList furtherTables(SqlConnection&) const { return {}; }

private:
    const QString m_driverType;
    bool ensureTables();

    Scheduler* m_scheduler;
    SqliteStore m_store;
    QSqlQuery m_lastInsert;
    std::function<bool(const QString&)> m_flush;
    std::unique_ptr<WalKeeper> m_keeper;
};
