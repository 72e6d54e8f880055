#include "db/StationDB.h"

#include "common/Scheduler.h"
#include "db/PartTable.h"

namespace {

const QString resultTable = QStringLiteral("RltTable");
const QString timeFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss zzz");

/// Names and types are those that the plants' reports ask for.
const SqlValueMap& resultColumns()
{
    static const QString number = QStringLiteral("INT(100)");
    static const QString text = QStringLiteral("VARCHAR(32)");
    static const SqlValueMap columns{
        {QStringLiteral("dAngle"), number},
        {QStringLiteral("errorType"), number},
        {QStringLiteral("matchScore"), number},
        {QStringLiteral("resultTip"), text},
        {QStringLiteral("stationName"), text},
        {QStringLiteral("threshBenchMark"), text},
        {QStringLiteral("time"), QStringLiteral("DATETIME(32)")},
        {QStringLiteral("value1"), text},
        {QStringLiteral("value2"), text},
        {QStringLiteral("value3"), text},
    };
    return columns;
}

} // namespace

StationDB::StationDB(const QString& path, const QString& driverType, QObject* parent)
    : DataBaseSql(path, driverType, parent)
{
}

QVector<DataBaseSql::Table> StationDB::tables() const
{
    return {{resultTable, resultColumns(), true}};
}

bool StationDB::insertResult(const StationResult& result)
{
    return insertResult(result, scheduler().now());
}

QStringList StationDB::furtherTables(SqlConnection& connection) const
{
    return PartTable::missing(connection);
}

/// Both rows or none.
bool StationDB::insertResult(const StationResult& result, const QDateTime& time)
{
    m_lastRow = 0;
    const bool inserted = store().run([&](SqlConnection& connection) {
        connection.exec(QStringLiteral("BEGIN IMMEDIATE"));
        if (connection.failed())
            return false;
        if (insertPart(connection, result, time)) {
            connection.exec(QStringLiteral("COMMIT"));
            if (!connection.failed())
                return true;
        }
        connection.rollBack();
        return false;
    });
    if (inserted)
        committed();
    return inserted;
}

bool StationDB::insertPart(SqlConnection& connection, const StationResult& result, const QDateTime& time)
{
    const QSqlQuery row =
        connection.exec(SqlBuilder::insertSql(resultTable, {{QStringLiteral("dAngle"), result.angle},
                                                            {QStringLiteral("errorType"), result.errorType},
                                                            {QStringLiteral("matchScore"), result.matchScore},
                                                            {QStringLiteral("resultTip"), result.resultTip},
                                                            {QStringLiteral("stationName"), result.stationName},
                                                            {QStringLiteral("threshBenchMark"), result.threshBenchMark},
                                                            {QStringLiteral("time"), timeText(time)},
                                                            {QStringLiteral("value1"), result.value1},
                                                            {QStringLiteral("value2"), result.value2},
                                                            {QStringLiteral("value3"), result.value3}}));
    if (connection.failed())
        return false;
    m_lastRow = row.lastInsertId().toLongLong();
    return PartTable::insert(connection, m_lastRow, time, result.part, result.errorType);
}

bool StationDB::fillInParts(int count)
{
    bool left = false;
    store().run([&](SqlConnection& connection) { return PartTable::fillIn(connection, count, &left); });
    if (left)
        committed();
    return left;
}

/// The time as well: a fresh file counts its rows anew.
bool StationDB::setPicture(qint64 row, const QDateTime& time, const QString& path)
{
    const QString where = QStringLiteral("uid = '%1' AND time = '%2'").arg(QString::number(row), timeText(time));
    store().exec(SqlBuilder::updateSql(resultTable, {{QStringLiteral("value1"), path}}, where));
    if (succeeded())
        committed();
    return succeeded();
}

int StationDB::countAlike(const StationResult& result, const QDateTime& time)
{
    const QString where = QStringLiteral("time = '%1' AND stationName = '%2' AND value2 = '%3' AND value3 = '%4'");
    QSqlQuery query = store().exec(SqlBuilder::selectSql(
        resultTable, {QStringLiteral("count(*)")},
        SqlBuilder::filled(where, {timeText(time), result.stationName, result.value2, result.value3})));
    return query.next() ? query.value(0).toInt() : 0;
}

RowThinner& StationDB::thinner()
{
    if (!m_thinner)
        m_thinner = std::make_unique<RowThinner>(
            RowThinner::Table{resultTable, QStringLiteral("uid"), QStringLiteral("time")}, scheduler());
    return *m_thinner;
}

int StationDB::thin()
{
    if (!isOpen())
        return RowThinner::msWhenHeld;
    const RowThinner::Step step = thinner().step(store().connection());
    if (step.rows > 0)
        committed();
    return step.nextMs;
}

QDateTime StationDB::lastTime()
{
    QSqlQuery query = store().exec(QStringLiteral("select time from %1 order by uid desc limit 1").arg(resultTable));
    return query.next() ? QDateTime::fromString(query.value(0).toString(), timeFormat) : QDateTime();
}

QString StationDB::timeText(const QDateTime& time)
{
    return time.toString(timeFormat);
}
