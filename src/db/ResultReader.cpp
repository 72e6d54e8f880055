#include "db/ResultReader.h"

#include "db/SqliteFile.h"
#include "db/StationDB.h"

#include <QVariant>

namespace {

QString condition(QDate first, QDate last)
{
    const auto start = [](QDate day) { return day.toString(QStringLiteral("yyyy-MM-dd")); };
    // A day's texts begin with it and a blank, so that the next day's first text lies behind all of them.
    return QStringLiteral(" FROM RltTable WHERE time >= '%1' AND time < '%2'")
        .arg(start(first), start(last.addDays(1)));
}

/// In the order of the columns that results() asks for.
StationResultRow rowOf(const QSqlQuery& query)
{
    StationResultRow row;
    row.uid = query.value(0).toLongLong();
    row.time = query.value(1).toString();
    row.result.angle = query.value(2).toDouble();
    row.result.errorType = query.value(3).toInt();
    row.result.matchScore = query.value(4).toDouble();
    row.result.resultTip = query.value(5).toString();
    row.result.threshBenchMark = query.value(6).toString();
    row.result.stationName = query.value(7).toString();
    row.result.value1 = query.value(8).toString();
    row.result.value2 = query.value(9).toString();
    row.result.value3 = query.value(10).toString();
    return row;
}

} // namespace

ResultReader::ResultReader(const QString& path)
    : m_connection(QStringLiteral("QSQLITE"))
{
    m_connection.database().setDatabaseName(path);
}

bool ResultReader::open(QString* error)
{
    return SqliteFile::openForReading(m_connection, error);
}

/// By time, then by number: after the clock was set back, the later row may bear the earlier time.
QVector<StationResultRow> ResultReader::results(QDate first, QDate last, int limit, int offset, QString* error)
{
    QVector<StationResultRow> rows;
    QSqlQuery query = m_connection.exec(
        QStringLiteral("SELECT uid, time, dAngle, errorType, matchScore, resultTip, threshBenchMark, stationName, "
                       "value1, value2, value3") +
        condition(first, last) + QStringLiteral(" ORDER BY time, uid LIMIT %1 OFFSET %2").arg(limit).arg(offset));
    if (m_connection.failed() && error)
        *error = SqliteFile::describe(m_connection, QStringLiteral("SELECT"));
    while (query.next())
        rows.append(rowOf(query));
    return rows;
}

int ResultReader::count(QDate first, QDate last)
{
    QSqlQuery query = m_connection.exec(QStringLiteral("SELECT count(*)") + condition(first, last));
    return query.next() ? query.value(0).toInt() : -1;
}

/// Stored times compare as texts, so the bare day stands for its first moment.
bool ResultReader::countStation(const QString& stationName, const QDateTime& end, double foundBelow, double refusedFrom,
                                StationCount* count)
{
    QSqlQuery query = m_connection.exec(
        QStringLiteral("SELECT count(*), total(dAngle < %1), total(dAngle >= %2) FROM RltTable WHERE time >= '%3' AND "
                       "time < '%4' AND stationName = '%5'")
            .arg(QString::number(foundBelow), QString::number(refusedFrom), end.toString(QStringLiteral("yyyy-MM-dd")),
                 StationDB::timeText(end), stationName));
    if (!query.next())
        return false;
    count->found = query.value(1).toInt();
    count->refused = query.value(2).toInt();
    count->notFound = query.value(0).toInt() - count->found - count->refused;
    return true;
}
