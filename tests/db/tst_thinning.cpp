#include "OtherProgram.h"
#include "db/StationDB.h"
#include "db/log/ksLogDB.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QDateTime noon(QDate(2026, 3, 31), QTime(12, 0));

QStringList said;

/// So many rows of each of the last days, the oldest first, and today's.
void fill(OtherProgram& file, const QString& insert, int days, int rowsADay)
{
    file.run("BEGIN");
    for (int ago = days; ago >= 0; --ago)
        for (int i = 0; i < rowsADay; ++i)
            file.run(insert.arg(noon.addDays(-ago).addSecs(i).toString("yyyy-MM-dd hh:mm:ss zzz")));
    file.run("COMMIT");
}

/// The results of some days, with the thinning that their owner would call.
struct Results
{
    explicit Results(const QTemporaryDir& folder)
        : path(folder.filePath("Pellix.db"))
        , database(path)
    {
        database.setScheduler(clock);
        database.initialise();
        timer->start(0);
    }
    QStringList days() const
    {
        return OtherProgram(path).column("SELECT DISTINCT substr(time, 1, 10) FROM RltTable ORDER BY 1");
    }
    int rows() const { return OtherProgram(path).value("SELECT count(*) FROM RltTable").toInt(); }

    ManualScheduler clock{noon};
    const QString path;
    StationDB database;
    std::unique_ptr<Scheduler::Timer> timer =
        clock.timer(Scheduler::SingleShot, [this] { timer->start(database.thin()); });
};

const QString insertResult = "INSERT INTO RltTable(time) VALUES('%1')";

} // namespace

class ThinningTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        said.clear();
        SystemLog::setOutput([](int, const char* text, int length) { said << QString::fromUtf8(text, length); });
    }
    void cleanup() { SystemLog::setOutput(nullptr); }

    void oldDaysGoAndAreNamed_data()
    {
        Table::of<int, int, QString>({{"never", 0, 11, ""},
                                      {"three days", 3, 4, "700条（2026-03-21至2026-03-27），只保留3天"},
                                      {"today only", 1, 2, "900条（2026-03-21至2026-03-29），只保留1天"},
                                      {"none is so old", 10, 11, ""}});
    }
    void oldDaysGoAndAreNamed()
    {
        const auto [limit, left, line] = Table::row<int, int, QString>();
        const QTemporaryDir folder;
        Results results(folder);
        OtherProgram other(results.path);
        fill(other, insertResult, 10, 100);
        other.run(insertResult.arg("no time at all"));
        other.run(insertResult.arg(""));
        results.database.thinner().setDays(limit);
        results.clock.advance(RowThinner::msWhenHeld);
        const int soon = results.rows();
        QVERIFY2(soon > left * 100, "a few at a time");
        results.clock.advance(2 * RowThinner::msWhenIdle);
        QCOMPARE(results.days().size(), left + 2); // with those that nobody knows the age of
        QCOMPARE(said.size(), line.isEmpty() ? 0 : 1);
        QVERIFY2(said.join("").contains(line), qPrintable(said.join("")));
        QVERIFY(results.database.insertResult({})); // on the connection that has to wait for others again
        QCOMPARE(OtherProgram(results.path).value("PRAGMA integrity_check"), QString("ok"));
    }

    void clockThatJumpedDeletesNothingUntilSomebodyLookedAtIt()
    {
        const QTemporaryDir folder;
        Results results(folder);
        OtherProgram other(results.path);
        fill(other, insertResult, 3, 10);
        results.database.thinner().setDays(30);
        results.clock.advance(RowThinner::msWhenIdle);
        results.clock.setClock(noon.addYears(4));
        results.clock.advance(60 * RowThinner::msWhenIdle);
        QCOMPARE(results.rows(), 40);
        QCOMPARE(results.database.thinner().clock().jump().date().year(), 2030);
        results.clock.setClock(noon);
        results.clock.advance(RowThinner::msWhenIdle);
        QVERIFY(results.database.thinner().clock().jump().isValid());
        results.database.thinner().clock().accept();
        results.clock.advance(RowThinner::msWhenIdle);
        QCOMPARE(results.rows(), 40);
        results.clock.advance(qint64(29) * 24 * 3600 * 1000); // a month in which nobody touches it
        QCOMPARE(results.rows(), 20);
    }

    void anotherProgramThatWritesIsNotWaitedFor()
    {
        const QTemporaryDir folder;
        Results results(folder);
        OtherProgram other(results.path);
        fill(other, insertResult, 3, 10);
        results.database.thinner().setDays(1);
        QVERIFY(other.run("BEGIN IMMEDIATE"));
        results.clock.advance(10 * RowThinner::msWhenHeld);
        QVERIFY(other.run("COMMIT"));
        QVERIFY2(said.isEmpty(), "what passes by itself is no fault");
        results.clock.advance(2 * RowThinner::msWhenHeld);
        QCOMPARE(results.rows(), 20);
    }

    void linesOfTheSystemLogGoInItsPauses()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("dbLog.db");
        SystemLog::ksLogDB log(path);
        const QString today = QDate::currentDate().toString(Qt::ISODate);
        OtherProgram other(path);
        fill(other, "INSERT INTO SystemInfo(datetime, type, message) VALUES('%1', 2, 'old')", 10, 20);
        log.thinner().setDays(30000);
        log.setPause(1);
        log.start();
        log.append(2, "new", 3);
        log.thinner().setDays(1); // the clock of the machine is of a later year than these rows, or of that very day
        if (QDate::currentDate() <= noon.date())
            QSKIP("the machine's clock is behind the rows");
        QTRY_COMPARE_WITH_TIMEOUT(other.value("SELECT count(*) FROM SystemInfo"), QString("1"), 60000);
        QCOMPARE(log.query(today, today, 2).size(), 1);
    }
};

QTEST_GUILESS_MAIN(ThinningTest)
#include "tst_thinning.moc"
