#include "db/log/ksLogDB.h"

#include "db/SqlBuilder.h"
#include "db/log/LogLine.h"

#include <QDateTime>
#include <QDebug>
#include <QFileInfo>

namespace SystemLog {
namespace {

const QString createTable =
    QStringLiteral("CREATE TABLE IF NOT EXISTS SystemInfo(\t\t\t\t\t\tid INTEGER  PRIMARY KEY AUTOINCREMENT UNIQUE "
                   "\t\t\t\t\t\t, datetime DATETIME NOT NULL DEFAULT (datetime(CURRENT_TIMESTAMP,'localtime'))  "
                   "\t\t\t\t\t\t, type INT(32) \t\t\t\t\t\t, message TEXT)");

/// A day is found without reading the lines of all the years.
const QString createIndex = QStringLiteral("CREATE INDEX IF NOT EXISTS idx_SystemInfo ON SystemInfo (datetime)");

constexpr std::chrono::seconds betweenOpenings(1);

/// A loss is logged when it is over, or after so many passes.
constexpr int longestLoss = 1000;

} // namespace

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

ksLogDB::ksLogDB(const QString& path)
    : m_path(QFileInfo(path).absoluteFilePath()) // the working directory may change later
{
    openTable();
    // The thread that writes opens its own.
    m_database.reset();
    m_lastOpen = {};
}

ksLogDB::~ksLogDB()
{
    stop();
}

void ksLogDB::append(int type, const char* message, int length)
{
    Entry entry{QByteArray(message, length), type};
    const auto bytes = static_cast<std::size_t>(length);
    std::deque<Entry> gone; // freed outside of the lock
    bool first = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        while (!m_queue.empty() && (m_queue.size() >= m_limits.lines || m_bytes + bytes > m_limits.bytes)) {
            m_bytes -= static_cast<std::size_t>(m_queue.front().message.size());
            gone.push_back(std::move(m_queue.front()));
            m_queue.pop_front();
            ++m_lost;
        }
        first = m_queue.empty();
        m_queue.push_back(std::move(entry));
        m_bytes += bytes;
    }
    if (first)
        m_lineCame.notify_one();
}

int ksLogDB::waiting() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return static_cast<int>(m_queue.size());
}

QStringList ksLogDB::movedAside() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_movedAside;
}

void ksLogDB::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_lineCame.notify_one();
    m_stopped.notify_one();
    wait();
}

bool ksLogDB::openTable()
{
    m_lastOpen = std::chrono::steady_clock::now();
    m_database = std::make_unique<QDBSqlite>(m_path);
    const bool open = m_database->open();
    const QString& text = m_database->openReport().text;
    if (!text.isEmpty() && text != m_reported)
        qWarning().noquote() << text;
    m_reported = text;
    if (!m_database->openReport().keptAside.isEmpty()) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_movedAside << m_database->openReport().keptAside;
    }
    if (!open)
        return false;
    m_database->connection().exec(createTable);
    if (!m_database->connection().failed())
        m_database->connection().exec(createIndex);
    return true;
}

/// Ready to write, if need be after opening the file anew: on demand, when it was damaged, and when it is gone.
bool ksLogDB::openAgain()
{
    if (m_database && !SqliteFile::needsReopening(m_database->connection()))
        return true;
    const bool tooSoon = m_database && std::chrono::steady_clock::now() - m_lastOpen < betweenOpenings;
    return !tooSoon && openTable();
}

bool ksLogDB::insert(int type, const QString& message)
{
    if (!openAgain())
        return false;
    SqlConnection& connection = m_database->connection();
    connection.exec(QStringLiteral("INSERT INTO SystemInfo(type ,message) VALUES('%1', '%2')").arg(type).arg(message));
    return !connection.failed();
}

/// Under the lock: whether this pass logs how many lines were lost.
bool ksLogDB::lossIsDue()
{
    const bool over = m_lost == m_lostBefore;
    m_lostBefore = m_lost;
    m_passesInLoss = m_lost > 0 ? m_passesInLoss + 1 : 0;
    return m_lost > 0 && (over || m_passesInLoss >= longestLoss);
}

/// Waits for a line; false when the thread is to end.
bool ksLogDB::nextEntry(Entry* entry)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_lineCame.wait(lock, [this] { return m_stop || !m_queue.empty(); });
    if (m_stop)
        return false;
    if (lossIsDue()) {
        const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
        *entry = {tr("%1 日志过多，丢弃了最早的%2行").arg(time).arg(m_lost).toUtf8(), Warning};
        m_lost = m_lostBefore = 0;
        return true;
    }
    *entry = std::move(m_queue.front());
    m_queue.pop_front();
    m_bytes -= static_cast<std::size_t>(entry->message.size());
    return true;
}

bool ksLogDB::pauseUnlessStopped()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_stopped.wait_for(lock, std::chrono::milliseconds(m_pauseMs), [this] { return m_stop; });
}

void ksLogDB::run()
{
    Entry entry;
    while (nextEntry(&entry)) {
        insert(entry.type, QString::fromUtf8(entry.message));
        if (!pauseUnlessStopped())
            break;
    }
    m_database.reset();
}

QList<QPair<QString, QString>> ksLogDB::query(const QString& fromDay, const QString& toDay, int type) const
{
    QList<QPair<QString, QString>> lines;
    QDBSqlite database(m_path);
    if (!database.openForReading())
        return lines;
    QSqlQuery query = database.connection().exec(SqlBuilder::filled(
        QStringLiteral(
            "select datetime,message from SystemInfo where datetime >'%1' and datetime < '%2' and type = '%3'"),
        {fromDay + QStringLiteral(" 00:00:00"), toDay + QStringLiteral(" 23:59:59"), QString::number(type)}));
    while (query.next())
        lines.append({query.value(0).toString(), query.value(1).toString()});
    return lines;
}

} // namespace SystemLog
