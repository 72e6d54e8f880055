#include "../db/OtherProgram.h"
#include "config/ksSysConfig.h"
#include "db/StationDB.h"
#include "db/archive/ImageArchive.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"
#include "support/TempHome.h"
#include "workflow/CellRecords.h"
#include "workflow/DayCounts.h"
#include "workflow/DayCountsFile.h"
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

/// One run of the program, as far as it counts.
struct Run
{
    DayCounts counts{Scheduler::system()};
    DayCountsFile file;

    explicit Run(const TempHome& home)
        : file(counts, {home.path("/Pellix.db"), home.path("/dayCounts.json")}, Scheduler::system())
    {
        QSignalSpy started(&file, &DayCountsFile::started);
        file.start(Scheduler::system().now());
        if (started.isEmpty() && !started.wait(patienceMs))
            qFatal("nothing read");
    }
    QString told(int station) const
    {
        const DayCount& count = counts.of(station);
        return QStringLiteral("%1 %2 %3").arg(count.found).arg(count.notFound).arg(count.refused);
    }
};

} // namespace

/// What the settings say of the archive reaches the right one of its two folders.
class RecordsTest : public QObject
{
    Q_OBJECT

private slots:
    void eachFolderIsCleanedAsItsOwnSettingSays()
    {
        const TempHome home;
        const QString source = home.path("/DBFiles/SrcImages/2024-05-01");
        const QString result = home.path("/DBFiles/Images/2024-05-01");
        QVERIFY(QDir().mkpath(source) && QDir().mkpath(result));
        ksSysConfig settings;
        settings.minFreeSpace = 0;
        settings.cleanRltImages = true;
        SetClock later(QDateTime::currentDateTime().addDays(settings.cleanDays + 1));
        CellRecords records(home.path(), settings, later);
        records.prepareImageFolders();
        QTRY_VERIFY(records.health().freeMiB >= 0 && !(QDir().exists(source) && QDir().exists(result)));
        QVERIFY(QDir().exists(source) && QDir().mkpath(result));

        settings.cleanSrcImages = true;
        settings.cleanRltImages = false;
        records.applySettings();
        QTRY_VERIFY(!(QDir().exists(source) && QDir().exists(result)));
        QVERIFY(QDir().exists(result));
    }

    void oldResultsGoAsTheSettingSays()
    {
        const TempHome home;
        ksSysConfig settings;
        ManualScheduler scheduler;
        CellRecords records(home.path(), settings, scheduler);
        records.openResultDatabase();
        OtherProgram results(home.path("/DBFiles/Pellix.db"));
        const auto count = [&results] { return results.value("SELECT count(*) FROM RltTable").toInt(); };
        for (const int ago : {1096, 1095, 30, 0})
            results.run(QStringLiteral("INSERT INTO RltTable(time) VALUES('%1')")
                            .arg(StationDB::timeText(scheduler.now().addDays(-ago))));
        scheduler.advance(60000);
        QCOMPARE(count(), 3);
        settings.recordDays = 7;
        records.applySettings();
        scheduler.setClock(scheduler.now().addDays(1));
        scheduler.advance(60000);
        QCOMPARE(count(), 3);
        QVERIFY(records.health().clockJump.isValid());
        records.acceptClock();
        scheduler.advance(60000);
        QCOMPARE(count(), 1);
        settings.recordDays = 0;
        records.applySettings();
        scheduler.advance(qint64(30) * 24 * 3600 * 1000);
        QCOMPARE(count(), 1);
    }

    void eachStationsImagesAreArchivedAsItsOwnSwitchesSay()
    {
        const TempHome home;
        ksSysConfig settings;
        CellRecords records(home.path(), settings, Scheduler::system());
        records.openResultDatabase();
        bool* const switches[] = {&settings.saveSrcImage[0], &settings.saveSrcImage[1], &settings.saveRltImage[0],
                                  &settings.saveRltImage[1]};
        const char* const folders[] = {"^/DBFiles/SrcImages/[^/]+/Station1/", "^/DBFiles/SrcImages/[^/]+/Station2/",
                                       "^/DBFiles/Images/[^/]+/Station1/", "^/DBFiles/Images/[^/]+/Station2/"};
        for (int on = 0; on < 4; ++on) {
            *switches[on] = true;
            QStringList paths;
            for (int station = 0; station <= 3; ++station)
                paths << records.store()->saveSourceImage(station, "W18", {}, true)
                      << records.store()->saveResultImage(station, "W18", {}, true);
            paths.removeAll({});
            QCOMPARE(paths.size(), 1);
            QVERIFY2(paths.first().contains(QRegularExpression(folders[on])), qPrintable(paths.first()));
            *switches[on] = false;
        }
    }

    void imagesOfFailuresAreKeptAsTheirOwnSettingsSay_data()
    {
        Table::of<bool, int, QString, QString>(
            {{"as ever", false, 0, "/DBFiles/Images/ /DBFiles/Images/", "- -"},
             {"only failures", true, 0, "- /DBFiles/Images/", "- -"},
             {"failures for longer", false, 30, "/DBFiles/Images/ /DBFiles/FailedImages/", "- failed"},
             {"failures for a shorter time", true, 2, "- /DBFiles/FailedImages/", "- -"}});
    }
    void imagesOfFailuresAreKeptAsTheirOwnSettingsSay()
    {
        const auto [only, days, folders, left] = Table::row<bool, int, QString, QString>();
        const TempHome home;
        ksSysConfig settings;
        settings.saveRltImage[0] = settings.cleanRltImages = true;
        settings.minFreeSpace = 0;
        ManualScheduler scheduler(QDateTime::currentDateTime());
        CellRecords records(home.path(), settings, scheduler);
        records.prepareImageFolders();
        records.openResultDatabase();
        QCOMPARE(QDir(home.path("/DBFiles/FailedImages")).exists(), false);
        settings.saveOnlyFailed = only;
        settings.failedDays = days;
        records.applySettings();
        const QString paths[] = {records.store()->saveResultImage(1, "W18", {}, true),
                                 records.store()->saveResultImage(1, "W18", {}, false)};
        QStringList found;
        for (const QString& path : paths)
            found << (path.isEmpty() ? QStringLiteral("-") : path.section('/', 0, 2) + '/');
        QCOMPARE(found.join(' '), folders);
        scheduler.setClock(scheduler.now().addDays(settings.cleanDays + 1));
        scheduler.advance(2000);
        records.acceptClock();
        scheduler.advance(2000);
        const auto isLeft = [&home](const QString& path) {
            return !path.isEmpty() && QFileInfo(QFileInfo(home.path(path)).path()).exists();
        };
        QCOMPARE(QString(isLeft(paths[0]) ? "found " : "- ") + (isLeft(paths[1]) ? "failed" : "-"), left);
    }

    void rowNamesOnlyAPictureThatIsOnTheDisk()
    {
        const TempHome home;
        ksSysConfig settings;
        settings.saveRltImage[0] = true;
        const QString day = QDate::currentDate().toString("yyyy-MM-dd");
        home.write("/DBFiles/Images/" + day + "/Station1/W19", "where the folder should be");
        QStringList paths;
        auto records = std::make_unique<CellRecords>(home.path(), settings, Scheduler::system());
        records->openResultDatabase();
        const auto record = [&](const char* model, const QImage& image) {
            StationResult row;
            row.value1 = records->store()->saveResultImage(1, model, image, true);
            paths << row.value1;
            records->store()->insertResult(row);
        };
        const auto named = [&home] {
            return OtherProgram(home.path("/DBFiles/Pellix.db")).column("select value1 from RltTable order by uid");
        };
        QImage image(64, 64, QImage::Format_Grayscale8);
        image.fill(Qt::gray);
        record("W18", image);
        QCOMPARE(named(), QStringList{""}); // a crash here leaves a whole row
        record("W19", image);
        record("W18", QImage());
        QTRY_COMPARE(records->archive().waiting(), 0);
        QVERIFY(!paths.contains(QString()));
        QCOMPARE(named(), (QStringList{paths[0], "", ""}));
        QVERIFY(QFile::exists(home.path() + paths[0]));
        record("W18", image);
        records.reset(); // the picture is still on its way
        QCOMPARE(named(), (QStringList{paths[0], "", "", paths[3]}));
    }

    void nightShiftBeginsItsOwnDay()
    {
        ManualScheduler scheduler(QDateTime(QDate(2026, 3, 31), QTime(23, 59)));
        DayCounts counts(scheduler);
        QCOMPARE(counts.of(1).yield(), -1.0);
        for (const bool found : {true, true, false, true})
            counts.onReading(1, reading(found));
        counts.onRefused(1);
        counts.onReading(2, reading(false));
        counts.onReading(0, reading(true)); // a result of no station
        QCOMPARE(told(counts.of(1).found, counts.of(1).refused, counts.of(1).yield(), counts.of(2).yield()),
                 "3|1|75|0");

        const QDate yesterday = scheduler.now().date();
        scheduler.advance(60 * 1000);
        QSignalSpy changed(&counts, &DayCounts::changed);
        counts.checkDay();
        counts.checkDay();
        QCOMPARE(changed.count(), 2);
        QCOMPARE(counts.of(1).found + counts.of(1).notFound + counts.of(1).refused, 0);
        counts.addEarlier(yesterday, 1, {5, 5, 0}); // read before midnight, told after it
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
        Run run(home);
        QCOMPARE(told(run.told(2), run.told(1)), "1 0 0|2 2 0");
    }

    void refusedAndUntaughtSurviveTheDayAndNoLonger()
    {
        const TempHome home;
        const QDate today = QDate::currentDate();
        const auto kept = [&] { return home.read("/dayCounts.json"); };
        {
            Run run(home);
            run.counts.onRefused(2);
            run.counts.onReading(2, reading(false)); // " No Cali!!!": answered, and no row
            for (int i = 1; i < DayCountsFile::secondsBetweenWrites; ++i)
                run.file.tick();
            QVERIFY(!QFile::exists(home.path("/dayCounts.json")));
            run.file.tick();
            QTRY_VERIFY(kept().contains("\"refused\": 1"));
            run.counts.onRefused(2);
        }
        {
            Run run(home);
            QCOMPARE(run.told(2), QStringLiteral("0 1 2"));
            StationDB database(home.path("/Pellix.db"));
            QVERIFY(database.initialise());
            for (const double angle : {361.0, 361.0, 17.5}) // then the program dies: the file knows nothing of them
                record(database, 2, angle, QDateTime(today, QTime(0, 0)));
        }
        QCOMPARE(Run(home).told(2), QStringLiteral("1 2 2"));
        home.write("/dayCounts.json", kept().replace(today.toString(Qt::ISODate).toLatin1(), "2026-03-31"));
        QCOMPARE(Run(home).told(2), QStringLiteral("1 2 0"));
        const QByteArray before = kept();
        {
            DayCounts counts(Scheduler::system());
            const DayCountsFile file(counts, {{}, home.path("/dayCounts.json")}, Scheduler::system());
            counts.onRefused(1);
        }
        QVERIFY2(kept() == before, "written before the day so far was read");
    }
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "tst_records.moc"
