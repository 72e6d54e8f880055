#include "config/AccessPolicy.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "db/log/ksLogDB.h"
#include "support/FakeCameras.h"
#include "support/FakePort.h"
#include "support/Table.h"
#include "support/TempHome.h"
#include "workflow/AlarmBook.h"
#include "workflow/AlarmWatch.h"
#include "workflow/CellRecords.h"
#include "workflow/PlcIndexTable.h"

#include <valvecell/ISerialStatus.h>

namespace {

struct LinePort : FakePort, ISerialStatus
{
    SerialStatus status() const override { return line; }
    void* extension(const char* id) override
    {
        return qstrcmp(id, ISerialStatus::id) == 0 ? static_cast<ISerialStatus*>(this) : FakePort::extension(id);
    }

    SerialStatus line;
};

/// For as long as any of its looks takes to come round.
void checks(AlarmWatch& watch)
{
    for (int seconds = 0; seconds < 10; ++seconds)
        watch.check();
}

QString list(const AlarmBook& book)
{
    QStringList texts;
    for (const Alarm& alarm : book.alarms())
        texts << QStringLiteral("%1/%2/%3x%4%5")
                     .arg(QString::number(alarm.kind), alarm.subject, alarm.detail, QString::number(alarm.count),
                          alarm.acknowledged ? QStringLiteral("!") : QString());
    return texts.join(' ');
}

} // namespace

class AlarmsTest : public QObject
{
    Q_OBJECT

private slots:
    void protectionThatIsOffIsShownQuietly()
    {
        const TempHome home;
        ksGlobalConfig config;
        AlarmBook book(Scheduler::system());
        const ksSysConfig settings;
        AlarmWatch watch(config, settings, book);
        config.onlineMode = true;
        watch.check();
        QCOMPARE(list(book), QStringLiteral("%1//x1!").arg(Alarm::ProtectionOff));
        config.useClearProtect = true;
        watch.check();
        QCOMPARE(list(book), QString());
    }

    void deletedAccessFileIsAnAlarmAndOpensNothing()
    {
        const TempHome home;
        const ksGlobalConfig config;
        AlarmBook book(Scheduler::system());
        const ksSysConfig settings;
        AlarmWatch watch(config, settings, book);
        AccessPolicy policy;
        policy.load();
        QVERIFY(!policy.engineerOnly);
        policy.engineerOnly = true;
        QVERIFY(policy.save(nullptr));
        checks(watch);
        QCOMPARE(list(book), QString());
        QVERIFY(QFile::remove(AccessPolicy::path()));
        checks(watch);
        QCOMPARE(book.alarms().value(0).subject, AccessPolicy::path());
        policy.load();
        QVERIFY(policy.engineerOnly);
        QVERIFY(policy.save(nullptr));
        checks(watch);
        QCOMPARE(list(book), QString());
    }

    void looseCableComesAndGoes()
    {
        const ksGlobalConfig config;
        ksSysConfig settings;
        settings.comPort = "COM3";
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, settings, book);
        LinePort port;
        watch.setPort(&port);
        const auto set = [&](bool open) {
            port.line.open = open;
            port.line.device = open ? "/dev/ttyUSB0" : ""; // nothing is behind the name of a cable that is pulled
            watch.check();
            return list(book);
        };
        QCOMPARE(set(true), QString());
        port.line.lastError = "gone";
        for (int check = 0; check < 2; ++check)
            QCOMPARE(set(false), QStringLiteral("0/COM3/gonex1"));
        book.acknowledge();
        QCOMPARE(set(false), QStringLiteral("0/COM3/gonex1!"));
        QCOMPARE(set(true), QString());
        QCOMPARE(set(false), QStringLiteral("0/COM3/gonex2"));
        settings.comPort = "COM4";
        QCOMPARE(set(false), QStringLiteral("0/COM4/gonex1"));
        QCOMPARE(book.history().size(), 2);
        QVERIFY(book.history().first().until >= book.history().first().since);
    }

    void silentPlcIsMissedWhileItIsExpectedToSpeak()
    {
        ksGlobalConfig config;
        const ksSysConfig settings;
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, settings, book);
        LinePort port;
        watch.setPort(&port);
        struct Step
        {
            bool open, online, heard;
            int seconds;
            bool silent;
        };
        for (const Step& step : {Step{true, false, false, 9, false},
                                 {true, true, false, 5, false},
                                 {true, true, false, 1, true},
                                 {true, true, true, 5, false},
                                 {true, true, false, 1, true},
                                 {true, false, false, 1, false},
                                 {true, true, false, 6, true},
                                 {false, true, false, 9, false}}) {
            port.line.open = step.open;
            config.onlineMode = step.online;
            if (step.heard)
                watch.heard();
            for (int second = 0; second < step.seconds; ++second)
                watch.check();
            QCOMPARE(list(book).contains(QString::number(Alarm::PlcSilent) + '/'), step.silent);
        }
    }

    void historyKeepsTheNewest()
    {
        AlarmBook book(Scheduler::system());
        for (int i = 0; i <= AlarmBook::maxHistory; ++i) {
            book.raise(Alarm::CameraLost, QString::number(i), {});
            book.clear(Alarm::CameraLost, QString::number(i));
        }
        QCOMPARE(book.history().size(), AlarmBook::maxHistory);
        QCOMPARE(book.history().first().subject, QString::number(AlarmBook::maxHistory));
    }

    void spoiledSetUpIsAnAlarmUntilItIsAcknowledged_data()
    {
        Table::of<QString>({{"table", "plcIndex.json"}, {"solution", "solutions/工位1/solution.json"}});
    }
    void spoiledSetUpIsAnAlarmUntilItIsAcknowledged()
    {
        const TempHome home;
        const auto [file] = Table::row<QString>();
        home.write("/user/" + file, "{\"S1\": [");
        home.write("/user/good.json", "{}");
        const ksGlobalConfig config;
        const ksSysConfig settings;
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, settings, book);
        watch.checkFiles(home.path(), Scheduler::system());
        QTRY_COMPARE(book.alarms().size(), 1);
        QCOMPARE(book.alarms().first().subject, file);
        QVERIFY(book.alarms().first().detail.contains("line 1"));
        book.clear(Alarm::ConfigDamaged, file);
        QCOMPARE(book.alarms().size(), 1);
        book.acknowledge();
        QVERIFY(book.alarms().isEmpty());
    }

    void libraryThatCannotBeUsedIsAnAlarm()
    {
        const TempHome home;
        home.write("/DBFiles/wheelhubzd.db/file", "a folder where the library ought to be");
        const ksGlobalConfig config;
        const ksSysConfig settings;
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, settings, book);
        CellRecords records(home.path(), settings, Scheduler::system());
        watch.setRecords(&records);
        PlcIndexTable indices(home.path());
        records.openModelLibrary(indices, {});
        watch.check();
        QCOMPARE(book.alarms().size(), 1);
        QCOMPARE(book.alarms().first().kind, Alarm::LibraryUnusable);
        QVERIFY(book.alarms().first().detail.contains("wheelhubzd.db"));
    }

    void onlyCamerasOfStationsAreMissed()
    {
        ksGlobalConfig config;
        const ksSysConfig settings;
        config.station(1).camKey = "cam1";
        config.station(2).camKey = "cam2";
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, settings, book);
        FakeCameras cameras({ICameraSettings::id});
        cameras.keys << "spare";
        cameras.messages = {{"cam2", "no power"}, {"spare", "unplugged"}};
        watch.setCameras(&cameras);
        watch.check();
        QCOMPARE(list(book), QStringLiteral("1/cam2/no powerx1"));
        config.station(2).camKey = "cam1"; // the engineer gives the station another camera
        watch.check();
        QCOMPARE(list(book), QString());
        const QString unknown = QString::number(Alarm::CameraUnknown);
        config.station(1).camKey = "cam9";
        watch.check();
        QCOMPARE(list(book), unknown + QStringLiteral("/1/cam9x1"));
        config = ksGlobalConfig(); // as when the file was lost: the second station may be out of use
        watch.check();
        QCOMPARE(list(book), unknown + QStringLiteral("/1/x1"));
    }

    void lossStaysUntilItIsAcknowledgedAndComesBackWhenItGrows()
    {
        AlarmBook book(Scheduler::system());
        book.raiseCounted(Alarm::ImagesGivenUp, {}, 3);
        book.clear(Alarm::ImagesGivenUp, {});
        book.raiseCounted(Alarm::ImagesGivenUp, {}, 3);
        QCOMPARE(list(book), QStringLiteral("4//x3"));
        book.acknowledge();
        book.raiseCounted(Alarm::ImagesGivenUp, {}, 3);
        QCOMPARE(list(book), QString());
        book.raiseCounted(Alarm::ImagesGivenUp, {}, 8);
        QCOMPARE(list(book), QStringLiteral("4//x8"));
    }

    void damagedDatabaseAndFullDiskAreReported()
    {
        const TempHome home;
        home.write("/DBFiles/Pellix.db", "no database at all, but long enough to be taken for one that is damaged");
        ksSysConfig settings;
        settings.minFreeSpace = 1 << 20; // more than any disk has
        const ksGlobalConfig config;
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, settings, book);
        CellRecords records(home.path(), settings, Scheduler::system());
        watch.setRecords(&records);
        watch.check();
        QCOMPARE(list(book), QString());
        records.prepareImageFolders();
        records.openResultDatabase();
        const auto reported = [&] {
            watch.check();
            return book.alarms().size();
        };
        QTRY_COMPARE(reported(), 2);
        home.write("/dbLog.db", "no database either, and just as long as one that a power failure has spoiled");
        const SystemLog::ksLogDB log(home.path("/dbLog.db"));
        watch.setLog(&log);
        QCOMPARE(reported(), 3);
        QVERIFY(list(book).contains(home.keptAside("/dbLog.db").value(0)));
        const QString aside = home.keptAside("/DBFiles/Pellix.db").value(0);
        QVERIFY2(list(book).contains(aside), qPrintable(list(book)));
        book.acknowledge();
        QCOMPARE(reported(), 1); // the file stays aside, the disk stays full
        QCOMPARE(book.alarms().first().kind, Alarm::DiskLow);
    }

    void lowDiskIsReportedUntilEnoughIsFreeAgain()
    {
        const TempHome home;
        ksSysConfig settings;
        const ksGlobalConfig config;
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, settings, book);
        CellRecords records(home.path(), settings, Scheduler::system());
        watch.setRecords(&records);
        records.prepareImageFolders();
        QTRY_VERIFY(records.health().freeMiB > 0);
        const double freeGiB = records.health().freeMiB / 1024.0;
        if (freeGiB < 15)
            QSKIP("whole GiB are too coarse for a disk with so little space");
        struct Step
        {
            double wanted; // of what is free
            bool low;
        };
        for (const auto& [wanted, low] : {Step{1.06, false}, {1.16, true}, {1.06, true}, {0.9, false}, {1.06, false}}) {
            settings.minFreeSpace = qRound(wanted * freeGiB);
            watch.check();
            QCOMPARE(!book.alarms().isEmpty(), low);
            QVERIFY(!low || qAbs(book.alarms().first().detail.toDouble() - freeGiB) < 0.05 + 0.01 * freeGiB);
        }
    }
};

QTEST_GUILESS_MAIN(AlarmsTest)
#include "tst_alarms.moc"
