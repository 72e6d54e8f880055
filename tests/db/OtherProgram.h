#pragma once

#include "db/SqlConnection.h"

#include <QVariant>

/// A database file as another program sees it.
class OtherProgram
{
public:
    explicit OtherProgram(const QString& path)
        : m_connection("QSQLITE")
    {
        m_connection.database().setDatabaseName(path);
        m_connection.database().setConnectOptions("QSQLITE_BUSY_TIMEOUT=2000");
        m_connection.database().open();
    }

    bool run(const QString& sql)
    {
        m_connection.exec(sql);
        return !m_connection.failed();
    }

    /// The first column of all rows.
    QStringList column(const QString& sql)
    {
        QStringList values;
        QSqlQuery query = m_connection.exec(sql);
        while (query.next())
            values << query.value(0).toString();
        return values;
    }

    QString value(const QString& sql) { return column(sql).value(0); }

private:
    SqlConnection m_connection;
};
