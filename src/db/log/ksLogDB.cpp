#include "db/log/ksLogDB.h"

#include "db/SqlBuilder.h"
#include "db/log/LogLine.h"

#include <QDateTime>
#include <QFileInfo>

#include <chrono>

namespace SystemLog {
namespace {

const QString createTable =
    QStringLiteral("CREATE TABLE IF NOT EXISTS SystemInfo(\t\t\t\t\t\tid INTEGER  PRIMARY KEY AUTOINCREMENT UNIQUE "
                   "\t\t\t\t\t\t, datetime DATETIME NOT NULL DEFAULT (datetime(CURRENT_TIMESTAMP,'localtime'))  "
                   "\t\t\t\t\t\t, type INT(32) \t\t\t\t\t\t, message TEXT)");

/// A day is found without reading the lines of all the years.
const QString createIndex = QStringLiteral("CREATE INDEX IF NOT EXISTS idx_SystemInfo ON SystemInfo (datetime)");

/// While the file takes no line.
constexpr int retryMs = 100;

SqliteFile::OpenRules openRules()
{
    SqliteFile::OpenRules rules;
    rules.durability = SqliteFile::Durability::SoonAfter;
    rules.busyMs = 1000; // only the writer's thread waits
    rules.ownTables = {{QStringLiteral("SystemInfo"),
                        {QStringLiteral("datetime"), QStringLiteral("type"), QStringLiteral("message")}}};
    rules.createTables = [](SqlConnection& connection) {
        connection.exec(createTable);
        if (!connection.failed())
            connection.exec(createIndex);
        return !connection.failed();
    };
    return rules;
}

/// A loss is logged when it is over, or after so many passes.
constexpr int longestLoss = 1000;

} // namespace

QDBSqlite::QDBSqlite(const QString& path, const QString& user, const QString& password)
    : m_store(path, openRules())
{
    if (!user.isEmpty()) {
        m_store.connection().database().setUserName(user);
        m_store.connection().database().setPassword(password);
    }
}

bool QDBSqlite::openForReading()
{
    return m_store.isOpen() || SqliteFile::openForReading(m_store.connection(), nullptr);
}

ksLogDB::ksLogDB(const QString& path)
    : m_path(QFileInfo(path).absoluteFilePath()) // the working directory may change later
    , m_thinner({QStringLiteral("SystemInfo"), QStringLiteral("id"), QStringLiteral("datetime")}, Scheduler::system())
{
    QDBSqlite database(m_path); // the thread that writes opens its own
    database.open();
    m_movedAside = database.store().keptAside();
    m_faultAtStart = database.store().fault();
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

void ksLogDB::startAgain()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = false;
    }
    start();
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

bool ksLogDB::insert(int type, const QString& message)
{
    if (!m_database) {
        m_database = std::make_unique<QDBSqlite>(m_path);
        m_database->store().goOnWith(m_faultAtStart);
        m_database->open();
    }
    SqliteStore& store = m_database->store();
    const int aside = store.keptAside().size();
    store.exec(QStringLiteral("INSERT INTO SystemInfo(type ,message) VALUES('%1', '%2')").arg(type).arg(message));
    if (store.keptAside().size() > aside) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_movedAside << store.keptAside().mid(aside);
    }
    return !store.failed();
}

/// Under the lock: whether this pass logs how many lines were lost.
bool ksLogDB::lossIsDue()
{
    const bool over = m_lost == m_lostBefore;
    m_lostBefore = m_lost;
    m_passesInLoss = m_lost > 0 ? m_passesInLoss + 1 : 0;
    return m_lost > 0 && (over || m_passesInLoss >= longestLoss);
}

ksLogDB::Next ksLogDB::nextEntry(Entry* entry, int pauseMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto pause = std::chrono::milliseconds(pauseMs);
    const bool came = m_lineCame.wait_for(lock, pause, [this] { return m_stop || !m_queue.empty(); });
    if (m_stop || !came)
        return m_stop ? Next::End : Next::Pause;
    if (lossIsDue()) {
        const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
        *entry = {tr("%1 日志过多，丢弃了最早的%2行").arg(time).arg(m_lost).toUtf8(), Warning};
        m_lost = m_lostBefore = 0;
        return Next::Line;
    }
    *entry = std::move(m_queue.front());
    m_queue.pop_front();
    m_bytes -= static_cast<std::size_t>(entry->message.size());
    return Next::Line;
}

void ksLogDB::putBack(Entry entry)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bytes += static_cast<std::size_t>(entry.message.size());
    m_queue.push_front(std::move(entry));
}

bool ksLogDB::pauseUnlessStopped(int ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_stopped.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_stop; });
}

void ksLogDB::write(Entry entry)
{
    const bool taken = insert(entry.type, QString::fromUtf8(entry.message)) || !m_database->store().mayPass();
    if (!taken)
        putBack(std::move(entry));
    pauseUnlessStopped(taken ? m_pauseMs : qMax(m_pauseMs, retryMs));
}

int ksLogDB::thin()
{
    const bool open = m_database && m_database->store().isOpen();
    return open ? m_thinner.step(m_database->store().connection()).nextMs : RowThinner::msWhenHeld;
}

/// Old lines go while no new one waits.
void ksLogDB::run()
{
    Entry entry;
    int pauseMs = RowThinner::msWhenHeld;
    for (;;) {
        const Next next = nextEntry(&entry, pauseMs);
        if (next == Next::End)
            break;
        next == Next::Line ? write(std::move(entry)) : void(pauseMs = thin());
    }
    m_database.reset();
}

QList<QPair<QString, QString>> ksLogDB::query(const QString& fromDay, const QString& toDay, int type) const
{
    QList<QPair<QString, QString>> lines;
    QDBSqlite database(m_path);
    if (!database.openForReading())
        return lines;
    QSqlQuery query = database.store().connection().exec(SqlBuilder::filled(
        QStringLiteral(
            "select datetime,message from SystemInfo where datetime >'%1' and datetime < '%2' and type = '%3'"),
        {fromDay + QStringLiteral(" 00:00:00"), toDay + QStringLiteral(" 23:59:59"), QString::number(type)}));
    while (query.next())
        lines.append({query.value(0).toString(), query.value(1).toString()});
    return lines;
}

} // namespace SystemLog
