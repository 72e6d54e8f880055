#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/models/ModelCell.h"
#include "guided/start/FirstStart.h"
#include "guided/start/PortSearch.h"
#include "support/FakeCameras.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"

#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>

namespace {

struct Start
{
    ModelCell cell;
    FakeCameras cameras{{ICameraDiscovery::id, ICameraList::id}};
    ksGlobalConfig config;
    ksSysConfig settings;
    ManualScheduler scheduler;
    std::unique_ptr<FirstStart> assistant;
    std::unique_ptr<DialogDriver> driver;
    AuditChanges changes;
    QStringList wanted;

    FirstStart::Parts parts()
    {
        return {settings,          config,
                &cameras,          nullptr,
                cell.models.get(), {{"Chinese", "中文"}, {"English", "English"}},
                cell.home.path(),  scheduler};
    }

    void open()
    {
        assistant = std::make_unique<FirstStart>(parts());
        driver = std::make_unique<DialogDriver>(*assistant);
        QObject::connect(assistant.get(), &FirstStart::settingsApplied, assistant.get(),
                         [this](const AuditChanges& applied) { changes += applied; });
        QObject::connect(assistant.get(), &FirstStart::teachingWanted, assistant.get(), [this] { wanted << "teach"; });
        QObject::connect(assistant.get(), &FirstStart::calibrationWanted, assistant.get(),
                         [this] { wanted << "calibrate"; });
        assistant->show();
    }
};

} // namespace

class FirstStartTest : public QObject
{
    Q_OBJECT

private slots:
    void itComesOnlyWhereSomethingIsMissing()
    {
        Start own;
        QVERIFY(!FirstStart::isAttended()); // as here
        QVERIFY(!FirstStart::isWanted(own.parts()));
        own.cameras.keys.clear();
        QVERIFY(FirstStart::isWanted(own.parts()));
        own.open();
        own.driver->press("neverBox");
        QVERIFY(!FirstStart::isWanted(own.parts()));
    }

    /// A camera that was found works for a station after one click; every step can be passed by.
    void stepsAreTakenOrPassedBy_data() { Table::of<bool>({{"Chinese", false}, {"English", true}}); }
    void stepsAreTakenOrPassedBy()
    {
        const auto [english] = Table::row<bool>();
        std::unique_ptr<English> language(english ? new English : nullptr);
        Start own;
        own.cameras.keys.clear();
        FoundCamera found;
        found.type = CameraType::Gige;
        found.model = QStringLiteral("GX-5");
        found.serial = QStringLiteral("123");
        found.settings = {{"serial", "123"}};
        own.cameras.lastFound = {found};
        own.open();
        const QString suffix = english ? QStringLiteral("en") : QStringLiteral("zh");
        const auto look = [&](int step) {
            QTest::qWait(0);
            QCOMPARE(own.assistant->step(), step);
            QCOMPARE(own.driver->clipped(), QStringList());
            if (english && step > 0)
                QCOMPARE(own.driver->chinese(), QStringList());
            own.driver->shoot(QStringLiteral("first-start-%1-%2").arg(step + 1).arg(suffix));
        };
        own.driver->get<QListWidget>("languageList")->setCurrentRow(1);
        own.driver->get<QListWidget>("languageList")->setCurrentRow(0);
        QCOMPARE(listed(own.changes),
                 QStringLiteral("language/select:Chinese>English language/select:English>Chinese"));
        look(0);
        own.driver->press("nextButton");
        own.cameras.discovering = false;
        QTRY_COMPARE(own.driver->get<QListWidget>("cameraList")->count(), 1);
        look(1);
        own.changes.clear();
        own.driver->press("take2Button");
        QCOMPARE(listed(own.changes), QStringLiteral("station_camkey_2:>cam1"));
        QCOMPARE(own.cameras.stored["serial"].toString(), QStringLiteral("123"));
        QVERIFY(own.cell.home.read("/user/globalConfig.json").contains("\"station_camkey_2\": \"cam1\""));
        own.driver->press("nextButton");
        look(2);
        own.driver->press("nextButton");
        look(3);
        own.driver->get<QPushButton>("nextButton")->click();
        look(4);
        for (QPushButton* button : own.assistant->findChildren<QPushButton*>("toolButton"))
            button->click();
        QCOMPARE(own.wanted.join(' '), QStringLiteral("teach calibrate"));
        own.driver->press("nextButton");
        QVERIFY(!own.assistant->isVisible());
    }

    /// At which port frames arrive; the present one is opened again when there are none.
    void portIsFoundByItsFrames_data()
    {
        Table::of<QString, QString, QString>({{"second", "B", "found B", "A B"},
                                              {"none", "", "nothing", "A B C old"},
                                              {"given up", "stop", "", "A B old"}});
    }
    void portIsFoundByItsFrames()
    {
        const auto [speaking, outcome, opened] = Table::row<QString, QString, QString>();
        ManualScheduler scheduler;
        QStringList tried;
        quint64 frames = 7; // of before
        const QString speaker = speaking;
        PortSearch search({[&](const QString& port) { tried << port; }, [&] { return frames; }}, scheduler);
        QString said;
        connect(&search, &PortSearch::found, this, [&](const QString& port) { said = "found " + port; });
        connect(&search, &PortSearch::nothingFound, this, [&] { said = "nothing"; });
        search.start({"A", "B", "C"}, "old");
        for (int i = 0; i < 100 && search.isRunning(); ++i) {
            scheduler.advance(100);
            if (tried.last() == speaker)
                ++frames;
            if (speaker == "stop" && tried.last() == "B")
                search.stop();
        }
        QCOMPARE(said, outcome);
        QCOMPARE(tried.join(' '), opened);
    }
};

QTEST_MAIN(FirstStartTest)
#include "tst_firststart.moc"
