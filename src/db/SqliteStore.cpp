#include "db/SqliteStore.h"

#include "platform/System.h"

#include <QCoreApplication>

namespace {

/// SQLite's code for a statement that is wrong in itself.
constexpr int codeError = 1;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(SqliteStore)
};

} // namespace

SqliteStore::SqliteStore(const QString& path, SqliteFile::OpenRules rules, const QString& driverType)
    : m_isFile(driverType == QLatin1String("QSQLITE"))
    , m_rules(std::move(rules))
    , m_connection(driverType)
{
    if (m_isFile)
        m_connection.database().setDatabaseName(path);
}

SqliteStore::~SqliteStore()
{
    disconnect();
}

bool SqliteStore::open()
{
    if (!m_isFile)
        return m_connection.isOpen() || m_connection.database().open();
    m_wanted = true;
    if (!needsReopening())
        return true;
    const bool due = m_pauseMs == 0 || m_scheduler->elapsedNs() >= m_nextAttemptNs;
    return due && reopen();
}

/// A file that was moved away, or whose name another has now, would take what nobody ever reads.
bool SqliteStore::needsReopening() const
{
    return SqliteFile::needsReopening(m_connection) || platform::fileIdentity(path()) != m_identity;
}

/// SQLite leaves the log of a file that lost its name, and would take it for that of the file which has the name now.
void SqliteStore::disconnect()
{
    const bool replaced = m_connection.isOpen() && platform::fileIdentity(path()) != m_identity;
    const bool logIsOwn = replaced && platform::fileIdentity(SqliteFile::logPath(path())) == m_logIdentity;
    m_connection.database().close();
    if (logIsOwn)
        SqliteFile::keepLogAside(path());
}

void SqliteStore::close()
{
    disconnect();
    m_wanted = false;
    m_pauseMs = 0;
}

/// \param unfit why the file is to be put aside for a fresh one, if it is
bool SqliteStore::reopen(const SqliteFile::Unfit& unfit)
{
    disconnect();
    // A thread that writes waits for another program once, not again and again.
    SqliteFile::OpenRules rules = m_rules;
    rules.waitWhileOpening = m_pauseMs == 0;
    m_report = unfit.reason.isEmpty() ? SqliteFile::openForWriting(m_connection, rules)
                                      : SqliteFile::beginFresh(m_connection, rules, unfit);
    logReport();
    m_pauseMs = m_report.open ? 0 : qBound(firstPauseMs, 2 * m_pauseMs, longestPauseMs);
    m_nextAttemptNs = m_scheduler->elapsedNs() + qint64(m_pauseMs) * 1000000;
    m_openings += m_report.open ? 1 : 0;
    m_identity = platform::fileIdentity(path());
    m_logIdentity = platform::fileIdentity(SqliteFile::logPath(path()));
    return m_report.open;
}

/// A file that was put aside is logged each time, a file that does not open once.
void SqliteStore::logReport()
{
    if (!m_report.keptAside.isEmpty()) {
        m_keptAside << m_report.keptAside;
        SystemLog::warning(m_report.text);
    }
    if (!m_report.open)
        m_fault.failed(m_report.text);
    else if (m_fault.lasts())
        m_fault.over(Texts::tr("数据库%1已能使用，此前%2次打开失败").arg(path(), QStringLiteral("%1")));
}

bool SqliteStore::run(const std::function<bool(SqlConnection&)>& statements)
{
    if (m_wanted && !open()) {
        m_connection.exec(QString()); // sets the error
        return false;
    }
    if (statements(m_connection))
        return true;
    if (!m_wanted || !needsReopening() || !reopen())
        return false;
    if (statements(m_connection))
        return true;
    // Freshly opened, and still no good: opening reads too little of a file to see every damage.
    const SqliteFile::Unfit unfit = SqliteFile::whyUnfit(m_connection, m_rules);
    return !unfit.reason.isEmpty() && reopen(unfit) && statements(m_connection);
}

QSqlQuery SqliteStore::exec(const QString& sql)
{
    QSqlQuery query(m_connection.database());
    run([&query, &sql](SqlConnection& connection) {
        query = connection.exec(sql);
        return !connection.failed();
    });
    return query;
}

bool SqliteStore::mayPass() const
{
    return !m_connection.isOpen() || (m_connection.failed() && m_connection.lastCode() != codeError);
}

QString SqliteStore::lastError() const
{
    return m_wanted && !m_connection.isOpen() ? m_report.text : m_connection.lastError().text();
}
