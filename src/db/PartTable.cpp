#include "db/PartTable.h"

#include "db/SqlConnection.h"

#include <QDateTime>
#include <QVariant>

namespace PartTable {
namespace {

/// SQLite's user_version of a file whose older rows are all filled in.
constexpr int filledVersion = 1;

const char* const columns = "wall, uid, station, model, plc, outcome, error, angle, x, y, score, image_ms, result_ms, "
                            "reply_ms, account, calibration, source";

/// A number behind its key in the text of evidence, null when it is not there.
QString numberIn(const char* key)
{
    return QStringLiteral("CASE WHEN instr(';'||value3, ';%1=') > 0 THEN CAST(substr(';'||value3, "
                          "instr(';'||value3, ';%1=') + %2) AS REAL) END")
        .arg(QLatin1String(key))
        .arg(qstrlen(key) + 2);
}

/// The columns as "RltTable" gives them; where the angle says that nothing was sent, x and y are none.
QString fromResults()
{
    return QStringLiteral(
               "SELECT CAST(strftime('%s', substr(time, 1, 19)) AS INTEGER) * 1000 + CAST(substr(time, 21, 3) AS "
               "INTEGER) AS wall, uid, CAST(substr(stationName, 9) AS INTEGER) AS station, substr(value2, "
               "instr(value2, '_') + 1) AS model, CAST(%1 AS INTEGER) AS plc, CASE WHEN dAngle < 360 THEN 0 WHEN "
               "dAngle >= 999 THEN 2 ELSE 1 END AS outcome, errorType AS error, dAngle AS angle, CASE WHEN dAngle < "
               "360 THEN %2 END AS x, CASE WHEN dAngle < 360 THEN %3 END AS y, "
               "matchScore AS score, NULL AS image_ms, NULL AS result_ms, NULL AS reply_ms, '' AS account, '' AS "
               "calibration, '' AS source FROM RltTable")
        .arg(numberIn("plc"), numberIn("x"), numberIn("y"));
}

int versionOf(SqlConnection& connection)
{
    QSqlQuery query = connection.exec(QStringLiteral("PRAGMA user_version"));
    return query.next() ? query.value(0).toInt() : 0;
}

bool isFilled(SqlConnection& connection)
{
    return versionOf(connection) >= filledVersion;
}

bool exists(SqlConnection& connection)
{
    return connection.exec(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = 'PartTable'")).next();
}

QVariant unlessNegative(double ms)
{
    return ms < 0 ? QVariant() : QVariant(ms);
}

} // namespace

QStringList missing(SqlConnection& connection)
{
    if (exists(connection))
        return {};
    const bool fresh = !connection.exec(QStringLiteral("SELECT 1 FROM RltTable LIMIT 1")).next();
    QStringList statements{
        QStringLiteral("CREATE TABLE PartTable(wall INTEGER NOT NULL, uid INTEGER NOT NULL, station INTEGER, model "
                       "TEXT, plc INTEGER, outcome INTEGER, error INTEGER, angle REAL, x REAL, y REAL, score REAL, "
                       "image_ms REAL, result_ms REAL, reply_ms REAL, account TEXT, calibration TEXT, source TEXT, "
                       "PRIMARY KEY(wall, uid)) WITHOUT ROWID"),
        QStringLiteral("CREATE INDEX idx_PartTable_model ON PartTable(model, outcome)"),
        QStringLiteral("CREATE INDEX idx_PartTable_outcome ON PartTable(outcome, station)"),
        QStringLiteral("CREATE INDEX idx_PartTable_uid ON PartTable(uid)"),
        // Whoever deletes a result, deletes its part. It stands with the results, and stays when the parts are dropped.
        QStringLiteral(
            "CREATE TRIGGER IF NOT EXISTS trg_PartTable AFTER DELETE ON RltTable BEGIN DELETE FROM PartTable "
            "WHERE uid = OLD.uid; END")};
    if (fresh)
        statements << QStringLiteral("PRAGMA user_version = %1").arg(filledVersion);
    return statements;
}

bool insert(SqlConnection& connection, qint64 uid, const QDateTime& time, const PartRecord& part, int error)
{
    QSqlQuery query(connection.database());
    query.prepare(QStringLiteral("INSERT INTO PartTable(%1) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)")
                      .arg(QLatin1String(columns)));
    const bool placed = part.outcome == PartOutcome::Found;
    const QVariant values[] = {wallOf(time),
                               uid,
                               part.station,
                               part.model,
                               part.plcIndex,
                               int(part.outcome),
                               error,
                               part.angle,
                               placed ? QVariant(part.x) : QVariant(),
                               placed ? QVariant(part.y) : QVariant(),
                               part.score,
                               unlessNegative(part.imageMs),
                               unlessNegative(part.resultMs),
                               unlessNegative(part.replyMs),
                               part.user,
                               part.calibration,
                               part.sourceImage};
    for (const QVariant& value : values)
        query.addBindValue(value);
    return connection.exec(query);
}

bool fillIn(SqlConnection& connection, int count, bool* left)
{
    *left = false;
    if (isFilled(connection))
        return true;
    QSqlQuery filled = connection.exec(
        QStringLiteral("INSERT OR IGNORE INTO PartTable(%1) SELECT * FROM (%2 WHERE uid < (SELECT "
                       "coalesce((SELECT min(uid) FROM PartTable), 9223372036854775807)) ORDER BY uid DESC LIMIT %3)")
            .arg(QLatin1String(columns), fromResults())
            .arg(count));
    if (connection.failed())
        return false;
    *left = filled.numRowsAffected() > 0;
    if (!*left)
        connection.exec(QStringLiteral("PRAGMA user_version = %1").arg(filledVersion));
    return !connection.failed();
}

QString source(SqlConnection& connection)
{
    if (!exists(connection))
        return QLatin1Char('(') + fromResults() + QLatin1Char(')');
    if (isFilled(connection))
        return QStringLiteral("PartTable");
    return QStringLiteral("(SELECT %1 FROM PartTable UNION ALL %2 WHERE uid < (SELECT coalesce((SELECT min(uid) FROM "
                          "PartTable), 9223372036854775807)))")
        .arg(QLatin1String(columns), fromResults());
}

bool isNewer(SqlConnection& connection)
{
    return versionOf(connection) > filledVersion;
}

qint64 wallOf(const QDateTime& time)
{
    return QDateTime(time.date(), time.time(), Qt::UTC).toMSecsSinceEpoch();
}

qint64 wallNow()
{
    return wallOf(QDateTime::currentDateTime());
}

QDateTime timeOf(qint64 wall)
{
    const QDateTime utc = QDateTime::fromMSecsSinceEpoch(wall, Qt::UTC);
    return QDateTime(utc.date(), utc.time());
}

} // namespace PartTable
