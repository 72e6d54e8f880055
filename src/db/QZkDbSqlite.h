#pragma once

#include "db/SqlBuilder.h"
#include "db/SqliteFile.h"

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

    /// What happened when the file was opened last; its text has been written as a warning.
    const SqliteFile::OpenReport& openReport() const { return m_openReport; }

    /// The connection's error of the last statement; empty when it succeeded.
    QString lastError() const { return m_connection.lastError().text(); }

protected:
    SqlConnection& connection() { return m_connection; }
    bool open(const SqliteFile::OpenRules& rules);

private:
    SqlConnection m_connection;
    SqliteFile::OpenReport m_openReport;
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
