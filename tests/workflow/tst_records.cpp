#include "../db/OtherProgram.h"
#include "config/ksSysConfig.h"
#include "db/StationDB.h"
#include "db/archive/ImageArchive.h"
#include "support/ManualScheduler.h"
#include "support/TempHome.h"
#include "workflow/CellRecords.h"

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
                paths << records.store()->saveSourceImage(station, "W18", {})
                      << records.store()->saveResultImage(station, "W18", {});
            paths.removeAll({});
            QCOMPARE(paths.size(), 1);
            QVERIFY2(paths.first().contains(QRegularExpression(folders[on])), qPrintable(paths.first()));
            *switches[on] = false;
        }
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
            row.value1 = records->store()->saveResultImage(1, model, image);
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
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "tst_records.moc"
