#include "BigHome.h"

#include "db/PartTable.h"
#include "db/StationDB.h"
#include "db/log/ksLogDB.h"
#include "results/data/LogReader.h"
#include "results/data/PartReader.h"

#include <QDateTime>
#include <QDir>

namespace {

constexpr int secondsAPart = 8;

class Filling : public SqlConnection
{
public:
    explicit Filling(const QString& path)
        : SqlConnection("QSQLITE")
    {
        database().setDatabaseName(path);
        database().open();
    }
};

/// The first second of so many steps that end now, as PartTable counts.
qint64 begin(int steps, int seconds)
{
    return PartTable::wallOf(QDateTime::currentDateTime()) / 1000 - qint64(steps) * seconds;
}

} // namespace

const QString& BigHome::path()
{
    static const BigHome home;
    return home.m_path;
}

BigHome::BigHome()
    : m_path(m_folder.path())
{
    QDir(m_path).mkpath("user");
    makeParts();
    makeLog();
}

/// One part in 25 fails; of 20 models; a tip of its own each.
void BigHome::makeParts()
{
    StationDB(PartReader::databaseOf(m_path)).initialise();
    Filling filling(PartReader::databaseOf(m_path));
    filling.exec(QStringLiteral(
                     "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < %1) "
                     "INSERT INTO RltTable(dAngle, errorType, matchScore, resultTip, stationName, threshBenchMark, "
                     "time, value1, value2, value3) SELECT CASE i * 7919 % 25 WHEN 7 THEN 361 WHEN 9 THEN 999 ELSE "
                     "(i * 37 % 360000) / 1000.0 END, 0, 90 + i % 10, '得分 ' || (i * 7919 % 100000), 'Station_' || (i "
                     "% 2 + 1), '', strftime('%Y-%m-%d %H:%M:%S', %2 + i * %3, 'unixepoch') || printf(' %03d', i % "
                     "1000), '/DBFiles/Images/2024-01-01/Station1/W18/2024_01_01_000000000.jpg', (i % 2 + 1) || '_W' "
                     "|| (i / 5000 % 20), 'score=0.93;plc=7;x=120.5;y=-3.25' FROM n")
                     .replace("%1", QString::number(parts))
                     .replace("%2", QString::number(begin(parts, secondsAPart)))
                     .replace("%3", QString::number(secondsAPart)));
    filling.exec(QStringLiteral(
        "INSERT INTO PartTable SELECT strftime('%s', substr(time, 1, 19)) * 1000 + substr(time, 21, 3), uid, "
        "substr(stationName, 9) + 0, substr(value2, 3), 7, CASE WHEN dAngle < 360 THEN 0 WHEN dAngle < 999 THEN 1 ELSE "
        "2 "
        "END, 0, dAngle, CASE WHEN dAngle < 360 THEN 120 + (uid * 7919 % 1000) / 1000.0 END, CASE WHEN dAngle < 360 "
        "THEN "
        "-3 + (uid * 104729 % 1000) / 1000.0 END, matchScore, 20, 60, 90 + uid % 30, '', '0a1b2c3d', '' FROM "
        "RltTable"));
}

/// One line in a hundred warns, one in a thousand is an error, one in five hundred a change.
void BigHome::makeLog()
{
    {
        SystemLog::ksLogDB log(LogReader::databaseOf(m_path));
    }
    Filling(LogReader::databaseOf(m_path))
        .exec(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < %1) INSERT "
                             "INTO SystemInfo(datetime, type, message) SELECT strftime('%Y-%m-%d %H:%M:%S', %2 + i * 8 "
                             "/ 3, 'unixepoch'), CASE WHEN i % 1000 = 1 THEN 0 WHEN i % 100 = 2 THEN 1 ELSE 2 END, "
                             "CASE WHEN i % 500 = 3 THEN '设置更改[Station/Scale_1]:0.05 → 0.051,用户:李工' ELSE "
                             "'●工位1:收到触发信号,型号为[W18],型号索引ID为[' || i || ']' END FROM n")
                  .replace("%1", QString::number(lines))
                  .replace("%2", QString::number(begin(lines, 8) + qint64(lines) * 16 / 3)));
}
