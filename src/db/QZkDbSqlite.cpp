#include "db/QZkDbSqlite.h"

#include <QDebug>

QZkDbSqlite::QZkDbSqlite(const QString& path, const QString& user, const QString& password)
    : m_connection(QStringLiteral("QSQLITE"))
{
    m_connection.database().setDatabaseName(path);
    if (!user.isEmpty()) {
        m_connection.database().setUserName(user);
        m_connection.database().setPassword(password);
    }
}

bool QZkDbSqlite::open(const SqliteFile::OpenRules& rules)
{
    m_openReport = SqliteFile::openForWriting(m_connection, rules);
    if (!m_openReport.text.isEmpty())
        qWarning().noquote() << m_openReport.text;
    return m_openReport.open;
}

QString QZkDbSqlite::insertSql(const QString& table, const QString& keyColumn, const QString& keyValue,
                               const SqlValueMap& values)
{
    return SqlBuilder::insertSql(table, keyColumn, keyValue, values);
}

QString QZkDbSqlite::selectSql(const QString& table, const QStringList& columns, const QString& where)
{
    return SqlBuilder::selectSql(table, columns, where);
}

QString QZkDbSqlite::updateSql(const QString& table, const SqlValueMap& values, const QString& where)
{
    return SqlBuilder::updateSql(table, values, where);
}

QString QZkDbSqlite::deleteSql(const QString& table, const QString& where)
{
    return SqlBuilder::deleteSql(table, where);
}

QString QZkDbSqlite::addColumnSql(const QString& table, const QString& column, const QString& type)
{
    return SqlBuilder::addColumnSql(table, column, type);
}

QString QZkDbSqlite::dropColumnSql(const QString& table, const QString& column)
{
    return SqlBuilder::dropColumnSql(table, column);
}

QString QZkDbSqlite::createTableSql(const QString& table, const QString& keyColumn, const QString& keyType,
                                    const SqlValueMap& columns)
{
    return SqlBuilder::createTableSql(table, keyColumn, keyType, columns);
}
