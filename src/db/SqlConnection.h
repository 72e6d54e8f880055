#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>

/// One connection, made for a driver directly and known to no registry, with the error of its last statement.
/// It belongs to the thread that opens it and is closed there.
class SqlConnection
{
public:
    explicit SqlConnection(const QString& driverType);
    ~SqlConnection();
    SqlConnection(const SqlConnection&) = delete;
    SqlConnection& operator=(const SqlConnection&) = delete;

    QSqlDatabase& database() { return m_database; }
    const QSqlDatabase& database() const { return m_database; }
    bool isOpen() const { return m_database.isOpen(); }

    /// Runs one statement. Its rows can be read once, from the first to the last.
    QSqlQuery exec(const QString& sql);

    /// Runs a prepared statement whose values are bound.
    bool exec(QSqlQuery& prepared);

    /// Undoes an open transaction, and leaves lastError() as it is.
    void rollBack();

    /// Of the last statement; not valid when it succeeded.
    const QSqlError& lastError() const { return m_error; }
    bool failed() const { return m_error.isValid(); }

    /// SQLite's primary result code of the last statement, 0 for none.
    int lastCode() const { return codeOf(m_error); }
    static int codeOf(const QSqlError& error);

private:
    QSqlDatabase m_database;
    QSqlError m_error;
};
