#pragma once

#include "db/SqlBuilder.h"
#include "db/SqliteStore.h"

#include <QPair>
#include <QRecursiveMutex>

/// Owns the connection to one SQLite file and composes its statements (see SqlBuilder). The thread that opens it uses
/// it.
class QZkDbSqlite
{
public:
    explicit QZkDbSqlite(const QString& path, const QString& user = QString(), const QString& password = QString());
    virtual ~QZkDbSqlite() = default;

    static QString insertSql(const QString& table, const QString& keyColumn, const QString& keyValue,
                             const SqlValueMap& values);
    static QString selectSql(const QString& table, const QStringList& columns, const QString& where);
    static QString updateSql(const QString& table, const SqlValueMap& values, const QString& where);
    static QString deleteSql(const QString& table, const QString& where);
    static QString addColumnSql(const QString& table, const QString& column, const QString& type);
    static QString dropColumnSql(const QString& table, const QString& column);
    static QString createTableSql(const QString& table, const QString& keyColumn, const QString& keyType,
                                  const SqlValueMap& columns);

    /// Before it is opened: whose time the pauses between two attempts go by; the system's by default.
    void setScheduler(Scheduler& scheduler) { m_store.setScheduler(scheduler); }

    /// What happened when the file was opened last; its text has been logged.
    const SqliteFile::OpenReport& openReport() const { return m_store.openReport(); }
    const QStringList& keptAside() const { return m_store.keptAside(); }
    /// How often the file was opened: who has read from it reads anew when this has changed.
    int openings() const { return m_store.openings(); }

    /// Why the last statement failed; empty when it succeeded.
    QString lastError() const { return m_store.lastError(); }

protected:
    SqliteStore& store() { return m_store; }

private:
    SqliteStore m_store;
};

/// A SQLite file without user or password.
class QSqliteGeneral : public QZkDbSqlite
{
public:
    explicit QSqliteGeneral(const QString& path)
        : QZkDbSqlite(path)
    {
    }
};

/// The model library: every wheel-hub model the cell knows, one row each, in "wheelhubzd.db". Names and texts that a
/// person typed have passed SqlText; others that a statement cannot carry fail. All operations return false on failure,
/// lastError() says why. The thread that opens it uses it.
class QSqliteWheelHubZd : public QSqliteGeneral
{
public:
    /// The file's name is appended to the folder as it stands: the caller supplies the separator at its end.
    explicit QSqliteWheelHubZd(const QString& folder);

    /// Opens the file when it is not open, and makes the table when it is missing. From then on every operation does it
    /// again when it has to; see SqliteStore. A file that cannot be written is waited for.
    bool createTable() { return store().open(); }

    /// False for an empty name or map, and for a name that is there already.
    bool addModel(const QString& name, const SqlValueMap& values);

    /// True as well when there is no such model.
    bool deleteModel(const QString& name);

    /// False when there is no such model or no such column.
    bool readValue(const QString& name, const QString& column, QVariant* value);
    bool readRecord(const QString& name, SqlValueMap* record);

    /// Mode 0 updates; any other mode fails. Serialised by a mutex of its own.
    bool updateValue(const QString& name, const QString& column, const QVariant& value, int mode = 0);

    /// Adds a column that is missing; only once the table holds a model, until then nothing happens and it is true.
    bool ensureColumn(const QString& column, const QString& type);

    /// False when there is no such column; its values are gone for good.
    bool dropColumn(const QString& column);

    /// A row of the information table with this suffix, which is made on demand with a column for each key.
    bool saveModelInfo(const QString& tableSuffix, const QString& keyColumn, const QString& keyValue,
                       const SqlValueMap& values);

    /// The model-to-camera relation, which others write.
    QStringList modelsOfCamera(const QString& cameraKey);
    QList<QPair<int, QString>> camerasOfModel(const QString& modelId);

    /// The names of all models, in ascending order.
    QStringList modelNames();

private:
    QRecursiveMutex m_updateMutex;
};
