#include "db/log/QDBSqlite.h"

namespace SystemLog {

QDBSqlite::QDBSqlite(const QString& path, const QString& user, const QString& password)
    : m_connection(QStringLiteral("QSQLITE"))
{
    m_connection.database().setDatabaseName(path);
    if (!user.isEmpty()) {
        m_connection.database().setUserName(user);
        m_connection.database().setPassword(password);
    }
}

bool QDBSqlite::open()
{
    if (m_connection.isOpen())
        return true;
    SqliteFile::OpenRules rules;
    rules.durability = SqliteFile::Durability::SoonAfter;
    rules.busyMs = 1000; // only the writer's thread waits
    rules.ownTables = {{QStringLiteral("SystemInfo"),
                        {QStringLiteral("datetime"), QStringLiteral("type"), QStringLiteral("message")}}};
    m_openReport = SqliteFile::openForWriting(m_connection, rules);
    return m_openReport.open;
}

bool QDBSqlite::openForReading()
{
    return m_connection.isOpen() || SqliteFile::openForReading(m_connection, nullptr);
}

void QDBSqlite::close()
{
    m_connection.database().close();
}

} // namespace SystemLog
