#include "db/StationDB.h"
#include "support/TempHome.h"
#include "workflow/DayCounts.h"
#include "workflow/EarlierCounts.h"
#include "workflow/ResultHandler.h"

namespace {

StationReading reading(bool found)
{
    StationReading reading;
    reading.found = found;
    return reading;
}

void record(StationDB& database, int station, double angle, const QDateTime& time)
{
    StationResult result;
    result.stationName = QStringLiteral("Station_%1").arg(station);
    result.angle = angle;
    QVERIFY(database.insertResult(result, time));
}

} // namespace

class DayCountsTest : public QObject
{
    Q_OBJECT

private slots:
    void nightShiftBeginsItsOwnDay()
    {
        QDate today(2026, 3, 31);
        DayCounts counts([&today] { return today; });
        QCOMPARE(counts.of(1).yield(), -1.0);
        for (const bool found : {true, true, false, true})
            counts.onReading(1, reading(found));
        counts.onRefused(1);
        counts.onReading(2, reading(false));
        counts.onReading(0, reading(true)); // a result of no station
        QCOMPARE(counts.of(1).found, 3);
        QCOMPARE(counts.of(1).refused, 1);
        QCOMPARE(counts.of(1).yield(), 75.0);
        QCOMPARE(counts.of(2).yield(), 0.0);

        today = today.addDays(1);
        QSignalSpy changed(&counts, &DayCounts::changed);
        counts.checkDay();
        counts.checkDay();
        QCOMPARE(changed.count(), 2);
        QCOMPARE(counts.of(1).found + counts.of(1).notFound + counts.of(1).refused, 0);
        counts.addEarlier(today.addDays(-1), 1, {5, 5, 0}); // read before midnight, told after it
        QCOMPARE(counts.of(1).found, 0);
    }

    void programRestartedAtNoonCountsOn()
    {
        const TempHome home;
        const QDateTime now = QDateTime::currentDateTime();
        const QDateTime today(now.date(), QTime(0, 0));
        {
            StationDB database(home.path("/Pellix.db"));
            QVERIFY(database.initialise());
            for (const double angle : {0.0, 359.9, 361.0, 365.0})
                record(database, 1, angle, today);
            record(database, 2, 17.5, today);
            record(database, 2, 18.5, today.addMSecs(-1)); // yesterday's last
            record(database, 2, 19.5, now.addDays(1));     // counted by its own signal
        }
        DayCounts counts([day = now.date()] { return day; });
        EarlierCounts earlier(home.path("/Pellix.db"));
        connect(&earlier, &EarlierCounts::counted, &counts, &DayCounts::addEarlier);
        earlier.start();
        QTRY_COMPARE(counts.of(2).found, 1);
        QCOMPARE(counts.of(2).notFound, 0);
        QCOMPARE(counts.of(1).found, 2);
        QCOMPARE(counts.of(1).notFound, 2);
    }
};

QTEST_GUILESS_MAIN(DayCountsTest)
#include "tst_daycounts.moc"
