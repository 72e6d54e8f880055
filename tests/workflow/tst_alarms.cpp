#include "config/AccessPolicy.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "db/log/ksLogDB.h"
#include "support/FakePort.h"
#include "support/TempHome.h"
#include "workflow/AlarmBook.h"
#include "workflow/AlarmWatch.h"
#include "workflow/CellRecords.h"

#include <valvecell/ICameraSettings.h>
#include <valvecell/ICoreCtrl.h>
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

struct Cameras : ICoreCtrl, ICameraSettings
{
    QStringList cameraKeys() override { return {"cam1", "cam2", "spare"}; }
    void setRequestCallback(RequestCallback) override {}
    void setImageCallback(ImageCallback) override {}
    void setNotificationCallback(NotificationCallback) override {}
    void start() override {}
    void stop() override {}
    void trigger(const QStringList&) override {}
    void* extension(const char* id) override
    {
        return qstrcmp(id, ICameraSettings::id) == 0 ? static_cast<ICameraSettings*>(this) : nullptr;
    }
    CameraStatus status(const QString& key) override
    {
        CameraStatus status;
        status.message = messages.value(key);
        return status;
    }
    QVariantMap settings(const QString&) override { return {}; }
    bool applySettings(const QString&, const QVariantMap&, QString*) override { return false; }

    QMap<QString, QString> messages;
};

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
        AlarmWatch watch(config, book);
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
        AlarmWatch watch(config, book);
        AccessPolicy policy;
        policy.load();
        QVERIFY(!policy.engineerOnly);
        policy.engineerOnly = true;
        QVERIFY(policy.save(nullptr));
        watch.check();
        QCOMPARE(list(book), QString());
        QVERIFY(QFile::remove(AccessPolicy::path()));
        watch.check();
        QCOMPARE(book.alarms().value(0).subject, AccessPolicy::path());
        policy.load();
        QVERIFY(policy.engineerOnly);
        QVERIFY(policy.save(nullptr));
        watch.check();
        QCOMPARE(list(book), QString());
    }

    void looseCableComesAndGoes()
    {
        const ksGlobalConfig config;
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, book);
        LinePort port;
        watch.setPort(&port);
        port.line.device = "COM3";
        port.line.open = true;
        watch.check();
        QCOMPARE(list(book), QString());
        port.line.open = false;
        port.line.lastError = "gone";
        watch.check();
        watch.check();
        QCOMPARE(list(book), QStringLiteral("0/COM3/gonex1"));
        book.acknowledge();
        QCOMPARE(list(book), QStringLiteral("0/COM3/gonex1!"));
        port.line.open = true;
        watch.check();
        QCOMPARE(list(book), QString());
        port.line.open = false;
        watch.check();
        QCOMPARE(list(book), QStringLiteral("0/COM3/gonex2"));
    }

    void onlyCamerasOfStationsAreMissed()
    {
        ksGlobalConfig config;
        config.station(1).camKey = "cam1";
        config.station(2).camKey = "cam2";
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, book);
        Cameras cameras;
        cameras.messages = {{"cam2", "no power"}, {"spare", "unplugged"}};
        watch.setCameras(&cameras);
        watch.check();
        QCOMPARE(list(book), QStringLiteral("1/cam2/no powerx1"));
        config.station(2).camKey = "cam1"; // the engineer gives the station another camera
        watch.check();
        QCOMPARE(list(book), QString());
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

    void damagedDatabaseAndFullDiskAreTold()
    {
        const TempHome home;
        home.write("/DBFiles/Pellix.db", "no database at all, but long enough to be taken for one that is damaged");
        ksSysConfig settings;
        settings.minFreeSpace = 1 << 20; // more than any disk has
        const ksGlobalConfig config;
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, book);
        CellRecords records(home.path(), settings, Scheduler::system());
        watch.setRecords(&records);
        watch.check();
        QCOMPARE(list(book), QString());
        records.prepareImageFolders();
        records.openResultDatabase();
        const auto told = [&] {
            watch.check();
            return book.alarms().size();
        };
        QTRY_COMPARE(told(), 2);
        home.write("/dbLog.db", "no database either, and just as long as one that a power failure has spoiled");
        const SystemLog::ksLogDB log(home.path("/dbLog.db"));
        watch.setLog(&log);
        QCOMPARE(told(), 3);
        QVERIFY(list(book).contains(home.keptAside("/dbLog.db").value(0)));
        const QString aside = home.keptAside("/DBFiles/Pellix.db").value(0);
        QVERIFY2(list(book).contains(aside), qPrintable(list(book)));
        book.acknowledge();
        QCOMPARE(told(), 1); // the file stays aside, the disk stays full
        QCOMPARE(book.alarms().first().kind, Alarm::DiskLow);
    }

    void lowDiskIsReportedUntilEnoughIsFreeAgain()
    {
        const TempHome home;
        ksSysConfig settings;
        const ksGlobalConfig config;
        AlarmBook book(Scheduler::system());
        AlarmWatch watch(config, book);
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
