#include "db/SqlConnection.h"

namespace {

/// Opens up the constructor that makes a connection without entering it into the process-wide registry.
class UnregisteredDatabase : public QSqlDatabase
{
public:
    explicit UnregisteredDatabase(const QString& driverType)
        : QSqlDatabase(driverType)
    {
    }
};

} // namespace

SqlConnection::SqlConnection(const QString& driverType)
    : m_database(UnregisteredDatabase(driverType))
{
}

SqlConnection::~SqlConnection()
{
    m_database.close();
}

QSqlQuery SqlConnection::exec(const QString& sql)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    // The library refuses these two without setting an error.
    if (!isOpen())
        m_error = QSqlError(QString(), QStringLiteral("the database is not open"), QSqlError::ConnectionError);
    else if (sql.isEmpty())
        m_error = QSqlError(QString(), QStringLiteral("no statement"), QSqlError::StatementError);
    else
        m_error = query.exec(sql) ? QSqlError() : query.lastError();
    return query;
}

bool SqlConnection::exec(QSqlQuery& prepared)
{
    m_error = prepared.exec() ? QSqlError() : prepared.lastError();
    return !failed();
}

void SqlConnection::rollBack()
{
    if (isOpen())
        QSqlQuery(m_database).exec(QStringLiteral("ROLLBACK"));
}

int SqlConnection::codeOf(const QSqlError& error)
{
    // Extended codes keep the primary one in the low byte.
    return error.isValid() ? error.nativeErrorCode().toInt() & 0xff : 0;
}
