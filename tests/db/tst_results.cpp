#include "OtherProgram.h"
#include "db/DetectDataDB.h"
#include "db/ResultReader.h"
#include "db/StationDB.h"
#include "support/Table.h"

namespace {

StationResult sampleResult(const QString& tip = QStringLiteral("气门孔 OK"))
{
    StationResult result;
    result.angle = 123.4567;
    result.errorType = 3;
    result.matchScore = 97.25;
    result.resultTip = tip;
    result.threshBenchMark = result.value2 = QStringLiteral("1_轮毂18");
    result.stationName = "Station_1";
    result.value1 = QStringLiteral("/DBFiles/Images/2024-05-01/Station1/轮毂18/2024_05_01_120000000.jpg");
    return result;
}

const QDateTime noon(QDate(2024, 5, 1), QTime(12, 0, 0, 7));

} // namespace

/// The databases of results and detections while all is well.
class ResultsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder.reset(new QTemporaryDir(QDir::tempPath() + QStringLiteral("/结果-XXXXXX"))); }

    void tablesAreMadeOnceInTheFormThatReportsKnow()
    {
        for (int start = 0; start < 2; ++start) {
            StationDB results(file());
            DetectDataDB detections(file());
            QVERIFY(results.initialise() && detections.initialise());
            QVERIFY(results.openReport().text.isEmpty());
            QCOMPARE(results.tableList(), (QStringList{"PartTable", "RltTable", "sqlite_sequence", "warningtable",
                                                       "zdtable", "zdtimetable"}));
        }
        OtherProgram other(file());
        const QMap<QString, QString> columns{
            {"RltTable", "dAngle INT(100), errorType INT(100), matchScore INT(100), resultTip VARCHAR(32), "
                         "stationName VARCHAR(32), threshBenchMark VARCHAR(32), time DATETIME(32), value1 VARCHAR(32), "
                         "value2 VARCHAR(32), value3 VARCHAR(32)"},
            {"zdtable", "channel INT(100), correlate INT(100), detecttime VARCHAR(32), diameter INT(100), "
                        "hight INT(100), model VARCHAR(32), pic BLOB, time DATETIME(32)"},
            {"zdtimetable", "endtime VARCHAR(32), starttime VARCHAR(32), type VARCHAR(32)"},
            {"warningtable", "class VARCHAR(32), message VARCHAR(256), time DATETIME(32)"}};
        for (const QString& table : columns.keys())
            QCOMPARE(other.value("select sql from sqlite_master where name='" + table + "'"),
                     "CREATE TABLE " + table + " (uid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, " + columns[table] +
                         ")");
        QCOMPARE(
            other.column("select name from sqlite_master where type='index' and tbl_name <> 'PartTable' order by name"),
            (QStringList{"idx_RltTable", "idx_warningtable", "idx_zdtable"}));
        QCOMPARE(other.value("PRAGMA journal_mode"), QString("wal"));
    }

    void resultIsReadBackAsItWasAnswered()
    {
        StationDB results(file());
        QVERIFY(results.initialise());
        const QString before = StationDB::timeText(QDateTime::currentDateTime());
        QVERIFY(results.insertResult(sampleResult()));
        const QString after = StationDB::timeText(QDateTime::currentDateTime());

        ResultReader reader(file());
        QVERIFY(reader.open(nullptr));
        const auto rows = reader.results(QDate(2000, 1, 1), QDate(2999, 1, 1));
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows[0].uid, 1);
        QVERIFY(before <= rows[0].time && rows[0].time <= after);
        const StationResult& read = rows[0].result;
        QCOMPARE(told(read.angle, read.errorType, read.matchScore), "123.4567|3|97.25");
        QCOMPARE(QStringList({read.resultTip, read.stationName, read.threshBenchMark, read.value2, read.value3}),
                 QStringList({"气门孔 OK", "Station_1", "1_轮毂18", "1_轮毂18", ""}));
        QCOMPARE(read.value1, sampleResult().value1);
    }

    void valuesThatNoStatementCarriesAreRefused()
    {
        StationDB results(file());
        QVERIFY(!results.insertResult(sampleResult())); // not open
        QVERIFY(results.initialise() && !results.insertResult(sampleResult("can't")));
        QVERIFY(!results.lastError().isEmpty() && results.insertResult(sampleResult("%1 \"%2\" ; --")));
        QCOMPARE(OtherProgram(file()).column("select resultTip from RltTable"), QStringList{"%1 \"%2\" ; --"});
    }

    void oneDayIsReadInPagesAndCounted()
    {
        StationDB results(file());
        QVERIFY(results.initialise());
        const QTime midnight(0, 0);
        const QDate day = noon.date();
        QVERIFY(results.insertResult(sampleResult("before"), QDateTime(day.addDays(-1), QTime(23, 59, 59, 999))));
        for (int i = 0; i < 5; ++i)
            QVERIFY(results.insertResult(sampleResult(QString::number(i)), QDateTime(day, midnight.addSecs(i))));
        QVERIFY(results.insertResult(sampleResult("last"), QDateTime(day, QTime(23, 59, 59, 999))));
        // The clock was set back: what comes later lies before.
        QVERIFY(results.insertResult(sampleResult("set back"), QDateTime(day, midnight.addMSecs(1))));
        QVERIFY(results.insertResult(sampleResult("after"), QDateTime(day.addDays(1), midnight)));

        ResultReader reader(file());
        QString error;
        QVERIFY2(reader.open(&error), qPrintable(error));
        const auto tips = [](const QVector<StationResultRow>& rows) {
            QStringList texts;
            for (const StationResultRow& row : rows)
                texts << row.result.resultTip;
            return texts;
        };
        QCOMPARE(tips(reader.resultsOfDay(day)), (QStringList{"0", "set back", "1", "2", "3", "4", "last"}));
        QCOMPARE(tips(reader.resultsOfDay(day, 2, 1)), (QStringList{"set back", "1"}));
        QCOMPARE(told(reader.countOfDay(day), reader.count(day.addDays(-1), day.addDays(1))), "7|9");
        QVERIFY(!ResultReader(m_folder->filePath("none.db")).open(&error) && error.contains("none.db"));
    }

    void readerHoldsARowWhileTheCellRecords()
    {
        StationDB results(file());
        QVERIFY(results.initialise());
        for (int i = 0; i < 10; ++i)
            QVERIFY(results.insertResult(sampleResult()));
        SqlConnection reader("QSQLITE");
        reader.database().setDatabaseName(file());
        QVERIFY(reader.database().open());
        QSqlQuery halfRead = reader.exec("select * from RltTable");
        QVERIFY(halfRead.next());
        for (int i = 0; i < 2000; ++i)
            QVERIFY2(results.insertResult(sampleResult()), qPrintable(results.lastError()));
        int rest = 0;
        while (halfRead.next())
            ++rest;
        QCOMPARE(rest, 9); // it sees the database as it was
    }

    void rowsReachTheDiskWhileTheCellRuns()
    {
        StationDB results(file());
        QVERIFY(results.initialise());
        // Enough rows that the log is moved into the file once, which without its log has them then; whatever is
        // committed while it is moved stays behind, and a copy made meanwhile may not be whole.
        for (int i = 0; i < 1500; ++i)
            QVERIFY(results.insertResult(sampleResult()));
        const auto rowsInFileAlone = [this] {
            const QString copy = m_folder->filePath("copy.db");
            QFile::remove(copy);
            QFile::copy(file(), copy);
            return OtherProgram(copy).value("select count(*) from RltTable").toInt();
        };
        QTRY_VERIFY(rowsInFileAlone() > 900);
    }

    void detectionQueriesAreComposedByteForByte_data()
    {
        const QString between = " where time >'a' and time < 'b'";
        const QString warnings = " from warningtable" + between + " and class = '2' order by time desc ";
        Table::of<int, int, QString, QString>({{"0", 0, 0, "", "select * from zdtable where time ='a'"},
                                               {"0 count", 0, 1, "", "select count(*) from zdtable where time ='a'"},
                                               {"1", 1, 0, "", "select * from zdtable" + between + " and model='W18'"},
                                               {"2", 2, 0, "x", "select * from zdtable" + between},
                                               {"2 models", 2, 0, "Count", "select model from zdtable" + between},
                                               {"2 count", 2, 1, "Count", "select count(*) from zdtable" + between},
                                               {"3", 3, 0, "", "select *" + warnings},
                                               {"3 count", 3, 1, "", "select count(*)" + warnings},
                                               {"4 models", 4, 0, "Count", "select model from zdtable" + between},
                                               {"5", 5, 0, "", ""}});
    }
    void detectionQueriesAreComposedByteForByte()
    {
        const auto [type, count, check, sql] = Table::row<int, int, QString, QString>();
        const QVariantMap parameters{{"Type", type}, {"Count", count}, {"CheckType", check}, {"name", "W18"},
                                     {"logType", 2}, {"time1", "a"},   {"time2", "b"}};
        QCOMPARE(DetectDataDB::buildQuery(parameters), sql);
        QCOMPARE(DetectDataDB::buildQuery({}), QString());
    }

    void detectionRecordKeepsItsPicture()
    {
        DetectDataDB detections(file());
        QVERIFY(detections.initialise());
        const QByteArray picture("a'b\0c\xff", 6);
        QVERIFY(detections.insertRecord({{"model", "it's"}, {"pic", picture}, {"time", "2024-05-01 12:00:00 000"}}));
        QVERIFY(detections.insertRecord("zdtable", {{"model", "W19"}, {"time", "2024-05-02 12:00:00 000"}}));
        QVERIFY(detections.insertRecord("no_such_table", {{"model", "W19"}})); // as if it were there
        OtherProgram other(file());
        QCOMPARE(other.value("select hex(pic) from zdtable where model = 'it''s'"), QString(picture.toHex().toUpper()));
        QVERIFY(detections.deleteBefore("2024-05-02"));
        QCOMPARE(other.column("select model from zdtable"), QStringList{"W19"});
        QVERIFY(detections.saveTimeRange("day", "08:00:00", "20:00:00"));
        QVERIFY(detections.insertWarning("m", "1", "t") && detections.clearAll());
        QCOMPARE(other.value("select (select count(*) from zdtable) || (select count(*) from warningtable) || "
                             "(select count(*) from zdtimetable)"),
                 QString("001"));
    }

    void oldestWarningsOfAClassAreTrimmed()
    {
        DetectDataDB detections(file());
        QVERIFY(detections.initialise());
        for (int i = 0; i < 6; ++i)
            QVERIFY(detections.insertWarning(QString::number(i), i == 0 ? "2" : "1", QString::number(i)));
        OtherProgram other(file());
        QVERIFY(detections.trimWarnings("1", 5));
        QCOMPARE(other.value("select count(*) from warningtable"), QString("6"));
        QVERIFY(detections.trimWarnings("1", 2));
        QCOMPARE(other.column("select message from warningtable order by time"), (QStringList{"0", "4", "5"}));
        QCOMPARE(other.column(DetectDataDB::buildQuery({{"Type", 3}, {"time1", "0"}, {"time2", "9"}, {"logType", 1}}))
                     .size(),
                 2);
    }

    void timeRangesAreKeptByType()
    {
        DetectDataDB detections(file());
        QMap<QString, DetectDataDB::TimeRange> ranges;
        QVERIFY(!detections.readTimeRanges(&ranges) && detections.initialise());
        QVERIFY(detections.saveTimeRange("day", "08:00:00", "20:00:00"));
        QVERIFY(detections.saveTimeRange("night", "20:00:00", "08:00:00"));
        QVERIFY(detections.deleteTimeRange("night") && !detections.deleteTimeRange("it's"));
        QVERIFY(detections.readTimeRanges(&ranges));
        QCOMPARE(ranges.keys(), QStringList{"day"});
        QCOMPARE(ranges["day"].uid, 1);
        QCOMPARE(ranges["day"].start, QTime(8, 0));
        QCOMPARE(ranges["day"].end, QTime(20, 0));
    }

    void generalStatementsKeepTheirOddities()
    {
        DataBaseSql general(file(), "QSQLITE");
        QVERIFY(general.open() && general.createTable("t", "uid", {{"b", "TEXT"}, {"a", "TEXT"}}));
        QVERIFY(!general.createTable("t t", "uid", {}) && !general.insert("", {{"a", 1}}));
        QVERIFY(!general.insert("t", {}) && general.insert("t", {{"a", 1}}));
        QVERIFY(!general.update("t", {{"a", 2}})); // there is no e_report_forms
        OtherProgram other(file());
        QVERIFY(other.run("create table e_report_forms(md_unique)"));
        QVERIFY(other.run("insert into t(uid, a) values(0, 'x')") && general.update("t", {{"a", 2}}));
        QCOMPARE(other.column("select a from t order by uid"), (QStringList{"2", "1"}));
        QVERIFY(!general.clear("t", "") && general.clear("t", "all"));
        QVERIFY(other.column("select a from t").isEmpty());
    }

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QString file() const { return m_folder->filePath("DBFiles/Pellix.db"); }
};

QTEST_GUILESS_MAIN(ResultsTest)
#include "tst_results.moc"
