#pragma once

#include "db/SqliteFile.h"

namespace SystemLog {

/// One connection to the log's database, for the thread that opens it.
class QDBSqlite
{
public:
    explicit QDBSqlite(const QString& path = QStringLiteral("dbLog.db"), const QString& user = QString(),
                       const QString& password = QString());

    /// Opens for writing when it is not open. A damaged file is kept aside and a fresh one begun.
    bool open();
    bool openForReading();
    void close();

    SqlConnection& connection() { return m_connection; }
    const SqliteFile::OpenReport& openReport() const { return m_openReport; }

private:
    SqlConnection m_connection;
    SqliteFile::OpenReport m_openReport;
};

} // namespace SystemLog
