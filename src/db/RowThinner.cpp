#include "db/RowThinner.h"

#include "db/SqliteFile.h"

#include <QVariant>

namespace {

/// SQLite's code for a file that another connection writes.
constexpr int codeBusy = 5;
constexpr qint64 longestStepNs = 3 * 1000 * 1000;
constexpr int rowsALogLine = 1000000;

/// While it lives, the connection does not wait for another program.
class Impatience
{
public:
    explicit Impatience(SqlConnection& connection)
        : m_connection(connection)
    {
        QSqlQuery query = connection.exec(QStringLiteral("PRAGMA busy_timeout"));
        m_before = query.next() ? query.value(0).toInt() : 0;
        set(0);
    }
    ~Impatience() { set(m_before); }
    Q_DISABLE_COPY(Impatience)

private:
    void set(int ms) { m_connection.exec(QStringLiteral("PRAGMA busy_timeout=%1").arg(ms)); }

    SqlConnection& m_connection;
    int m_before = 0;
};

} // namespace

RowThinner::RowThinner(Table table, const Scheduler& scheduler)
    : m_table(std::move(table))
    , m_scheduler(scheduler)
{
}

RowThinner::~RowThinner()
{
    logGone();
}

RowThinner::Step RowThinner::step(SqlConnection& connection)
{
    const int days = m_days;
    if (m_clock.check(m_scheduler))
        SystemLog::warning(tr("系统时间突变为%1，暂停按天数清理%2的记录")
                               .arg(m_clock.jump().toString(Qt::ISODate), connection.database().databaseName()));
    if (days <= 0)
        return {0, msWhenIdle};
    if (m_clock.jump().isValid())
        return {0, msWhenHeld};
    const qint64 begin = m_scheduler.elapsedNs();
    const int rows = deleteSome(connection, m_scheduler.now().date().addDays(-days).toString(Qt::ISODate));
    adapt(m_scheduler.elapsedNs() - begin);
    if (rows < 0)
        return {0, msWhenHeld};
    m_fault.over(tr("旧记录又能清理，期间失败%1次"));
    m_gone.rows += rows;
    m_gone.days = days;
    m_gone.file = connection.database().databaseName();
    if (rows == 0 || m_gone.rows >= rowsALogLine)
        logGone();
    return {rows, rows > 0 ? msBetweenSteps : msWhenIdle};
}

/// The oldest by their time; -1 when they cannot be deleted. Times of no form stay: nobody knows how old they are. The
/// lower bound looks like no number, since the column would take one for a number.
int RowThinner::deleteSome(SqlConnection& connection, const QString& before)
{
    const Impatience impatience(connection);
    QStringList keys;
    QString first, last;
    QSqlQuery old =
        connection.exec(QStringLiteral("SELECT %1, %2 FROM %3 WHERE %2 >= '0-' AND %2 < '%4' ORDER BY %2 LIMIT %5")
                            .arg(m_table.key, m_table.time, m_table.name, before)
                            .arg(m_rows));
    for (; old.next(); last = old.value(1).toString().left(10)) {
        if (keys.isEmpty())
            first = old.value(1).toString().left(10);
        keys << old.value(0).toString();
    }
    old.finish();
    if (!keys.isEmpty())
        connection.exec(QStringLiteral("DELETE FROM %1 WHERE %2 IN (%3)")
                            .arg(m_table.name, m_table.key, keys.join(QLatin1Char(','))));
    if (connection.failed()) {
        if (connection.lastCode() != codeBusy)
            m_fault.failed(SqliteFile::describe(connection, tr("清理旧记录")));
        return -1;
    }
    if (m_gone.rows == 0)
        m_gone.first = first;
    if (!keys.isEmpty())
        m_gone.last = last;
    return keys.size();
}

void RowThinner::adapt(qint64 tookNs)
{
    m_rows = tookNs > longestStepNs ? qMax(1, m_rows / 2) : qMin(mostRows, m_rows + 1);
}

void RowThinner::logGone()
{
    if (m_gone.rows == 0)
        return;
    SystemLog::information(
        tr("已删除%1的旧记录%2条（%3至%4），只保留%5天")
            .arg(m_gone.file, QString::number(m_gone.rows), m_gone.first, m_gone.last, QString::number(m_gone.days)));
    m_gone = {};
}
