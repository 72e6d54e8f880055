#include "config/ksSysConfig.h"
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
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "tst_records.moc"
