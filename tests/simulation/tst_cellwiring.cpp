#include "SimulatedCell.h"
#include "db/ResultReader.h"
#include "db/StationDB.h"
#include "support/Table.h"
#include "workflow/ModelManager.h"

#include <QSignalSpy>

#include <stdexcept>

namespace {

QStringList s_warnings;

void keepWarning(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtWarningMsg)
        s_warnings << text;
}

} // namespace

class CellWiringTest : public QObject
{
    Q_OBJECT

private slots:
    void noTriggerIsAnsweredBeforeTheLastStepOfTheStart()
    {
        SimulatedCell plant;
        plant.startUp();
        plant.send('C', 2, 2);
        plant.send('P', 5);
        plant.scheduler.advance(1000);
        QVERIFY(plant.modules->cameras.asked.isEmpty());
        QCOMPARE(plant.cell->alarms().alarms().first().kind, Alarm::Starting);
        QCOMPARE(plant.modules->port->commands(), QByteArray("CCC")); // the heart beats
        plant.open();
        QVERIFY(plant.cell->alarms().alarms().isEmpty());
        QCOMPARE(plant.config.station(1).runModel, QString("钢圈"));
        plant.send('P', 5);
        QCOMPARE(plant.modules->cameras.asked, QStringList("cam1"));
    }

    void partTakesItsRoadFromFrameToReply()
    {
        SimulatedCell plant;
        plant.settings.saveSrcImage[1] = true;
        plant.startUp();
        plant.open();
        QSignalSpy readings(plant.cell.get(), &Cell::readingChanged);
        QSignalSpy counts(plant.cell.get(), &Cell::countChanged);
        plant.send('C', 1, 2);
        plant.send('P', 6);
        plant.deliver(2);
        const FakeEngine::Task& task = plant.modules->inspection.tasks.at(0);
        QCOMPARE(task.solution + ' ' + task.model, QString("工位2 钢圈"));
        plant.answer(12.5);
        QCOMPARE(plant.replies(), QByteArray("G"));
        QCOMPARE(plant.modules->port->words(0), QString("0 0 12 500 100 0 50 0"));
        QCOMPARE(plant.panel.last(), QString("2|钢圈 angle :12.500 center:(100.000,50.000)"));
        QCOMPARE(readings.last().at(0).toInt(), 2);
        QCOMPARE(plant.cell->counts().of(2).found, 1);
        QCOMPARE(counts.last().at(0).toInt(), 2);
        plant.scheduler.advance(100);
        const QString archived = plant.home.path("/DBFiles/SrcImages/2026-03-31/Station2/钢圈");
        QCOMPARE(QDir(archived).entryList(QDir::Files).size(), 1);
        ResultReader reader(plant.home.path("/DBFiles/Pellix.db"));
        QVERIFY(reader.open(nullptr));
        ResultReader::StationCount count;
        QVERIFY(reader.countStation("Station_2", plant.scheduler.now().addSecs(1), 360, 999, &count));
        QCOMPARE(count.found, 1);
    }

    void reportThatCannotBeWrittenIsAnAlarmUntilItCan()
    {
        SimulatedCell plant;
        const QString change = plant.scheduler.now().addSecs(3600).toString("hh:mm");
        plant.home.write("/user/shifts.json",
                         QString(R"({"shift_begins": "%1", "report_when": "day", "report_pdf": false,
                                     "report_xlsx": true, "report_folder": "%2"})")
                             .arg(change, plant.home.path("/stick"))
                             .toUtf8());
        plant.startUp();
        plant.open();
        plant.scheduler.advance(60000); // what was before is nobody's business
        plant.send('C', 1, 2);
        plant.send('P', 6);
        plant.deliver(2);
        plant.answer(12.5);
        plant.scheduler.advance(3700'000);
        const auto written = [&plant] {
            const auto& all = plant.cell->alarms().alarms();
            return std::none_of(all.begin(), all.end(),
                                [](const Alarm& alarm) { return alarm.kind == Alarm::ReportUnwritten; });
        };
        QVERIFY(!written());
        QVERIFY(QDir().mkpath(plant.home.path("/stick")));
        plant.cell->applySettings({{"report_folder", {}, {}}});
        QVERIFY(written());
        QCOMPARE(QDir(plant.home.path("/stick")).entryList(QDir::Files), QStringList("2026-03-30.xlsx"));
    }

    void clockThatJumpsDeletesNothingUntilItsAlarmIsAcknowledged()
    {
        SimulatedCell plant;
        plant.settings.cleanSrcImages = true;
        plant.settings.minFreeSpace = 0;
        plant.scheduler.setClock(QDateTime::currentDateTime());
        plant.startUp();
        plant.open();
        const QString day = plant.home.path("/DBFiles/SrcImages/2026-03-31");
        QVERIFY(QDir().mkpath(day));
        plant.scheduler.advance(3000);
        plant.scheduler.setClock(plant.scheduler.now().addDays(30));
        plant.scheduler.advance(4000);
        QVERIFY(QDir().exists(day));
        QCOMPARE(plant.cell->alarms().alarms().value(0).kind, Alarm::ClockJumped);
        plant.scheduler.setClock(plant.scheduler.now().addDays(-30));
        plant.scheduler.advance(4000);
        plant.cell->alarms().acknowledge();
        plant.scheduler.advance(4000);
        QVERIFY(QDir().exists(day) && plant.cell->alarms().alarms().isEmpty());
        plant.scheduler.setClock(plant.scheduler.now().addDays(30));
        plant.scheduler.advance(4000);
        plant.cell->alarms().acknowledge();
        plant.scheduler.advance(4000);
        QVERIFY(!QDir().exists(day));
    }

    void clockThatIsWrongAtTheStartIsAnAlarm_data()
    {
        Table::of<QDateTime, bool>({{"battery empty", QDateTime({2009, 1, 1}, {0, 0}), true},
                                    {"before the last row", QDateTime({2026, 3, 30}, {12, 0}), true},
                                    {"right", QDateTime({2026, 3, 31}, {12, 0}), false}});
    }
    void clockThatIsWrongAtTheStartIsAnAlarm()
    {
        const auto [clock, wrong] = Table::row<QDateTime, bool>();
        SimulatedCell plant;
        QVERIFY(QDir().mkpath(plant.home.path("/DBFiles")));
        {
            StationDB earlier(plant.home.path("/DBFiles/Pellix.db"));
            QVERIFY(earlier.initialise() && earlier.insertResult({}, plant.scheduler.now()));
        }
        plant.scheduler.setClock(clock);
        plant.startUp();
        plant.open();
        plant.scheduler.advance(1000);
        const QVector<Alarm>& alarms = plant.cell->alarms().alarms();
        QCOMPARE(alarms.size(), wrong ? 1 : 0);
        QVERIFY(!wrong || alarms.first().kind == Alarm::ClockJumped);
    }

    void modelsThatTheStationsRunStandOutInTheList()
    {
        SimulatedCell plant;
        plant.startUp();
        plant.open();
        const auto current = [&plant] {
            QStringList names;
            for (int row = 0; row < plant.cell->models()->modelCount(); ++row)
                if (plant.cell->models()->isCurrent(row))
                    names << plant.cell->models()->modelName(row);
            return names.join(' ');
        };
        QCOMPARE(current(), QString("五辐")); // both stations'
        plant.send('C', 1, 2);
        QCOMPARE(current().split(' ').size(), 2);
        plant.send('C', 2, 2);
        QCOMPARE(current(), QString("钢圈"));
    }

    void eachStationsAccountCountsItsOwn()
    {
        SimulatedCell plant;
        plant.startUp();
        plant.open();
        plant.send('C', 1, 1);
        const CTrigDetector& first = plant.cell->controller()->stationObject("工位1")->account();
        const CTrigDetector& second = plant.cell->controller()->stationObject("工位2")->account();
        plant.send('P', 5);
        QCOMPARE(first.triggerCount() * 10 + second.triggerCount(), 10);
        plant.deliver(1);
        QCOMPARE(first.receiveCount() * 10 + second.receiveCount(), 10);
        plant.scheduler.advance(4000 - 20);
        plant.send('P', 6);
        plant.send('P', 5);
        s_warnings.clear();
        const auto before = qInstallMessageHandler(keepWarning);
        plant.scheduler.advance(20); // the check finds both captures under way
        plant.deliver(1);
        QCOMPARE(second.errorRun(), 1);
        const QStringList early = s_warnings;
        plant.scheduler.advance(4000);
        qInstallMessageHandler(before);
        QCOMPARE(early, QStringList());
        QCOMPARE(s_warnings.filter("没有图像"), QStringList("工位“工位2”：上一次触发没有图像"));
        QCOMPARE(second.errorRun(), 2);
        QCOMPARE(first.errorRun(), 0);
    }

    void testTriggersRunAtTheirIntervalUntilTheyAreStopped()
    {
        SimulatedCell plant;
        plant.config.onlineMode = false;
        plant.startUp();
        plant.open();
        plant.cell->setTestInterval(200);
        plant.cell->enterTestMode(TestMode::Start);
        for (int i = 0; i < 3; ++i) {
            plant.scheduler.advance(200);
            plant.deliver(1);
            plant.deliver(2);
            plant.answer(45);
            plant.answer(45);
        }
        QCOMPARE(plant.modules->cameras.asked.size(), 6); // both stations, three times
        QVERIFY2(plant.replies().isEmpty() && plant.cell->counts().of(1).found == 0, "a test answers and counts");
        plant.cell->enterTestMode(TestMode::Stop);
        plant.cell->enterTestMode(TestMode::SnapStation2);
        plant.scheduler.advance(1000);
        QCOMPARE(plant.modules->cameras.asked.mid(6), QStringList("cam2"));
    }

    void changedSettingsActAtOnce()
    {
        SimulatedCell plant;
        plant.settings.comPort = "COM7";
        plant.startUp();
        QCOMPARE(plant.modules->port->opened, QStringList("COM7 115200"));
        plant.settings.baudRate = 9600;
        plant.cell->applySettings({{"CheckThread/days", "7", "8"}});
        QCOMPARE(plant.modules->port->opened.size(), 1);
        plant.cell->applySettings({{"COM/Baute", "115200", "9600"}});
        QCOMPARE(plant.modules->port->opened.last(), QString("COM7 9600"));
    }

    void dayEndsAtMidnightAndCountsSurviveARestart()
    {
        SimulatedCell plant;
        plant.startUp();
        plant.open();
        plant.send('C', 9, 0);
        plant.send('P', 5);
        QCOMPARE(plant.cell->counts().of(1).refused, 1);
        plant.scheduler.advance(61 * 1000);
        QVERIFY(plant.home.read("/DBFiles/dayCounts.json").contains("\"refused\": 1"));
        plant.scheduler.setClock(QDateTime(plant.scheduler.now().date(), QTime(23, 59, 30)));
        plant.scheduler.advance(31 * 1000);
        QCOMPARE(plant.cell->counts().of(1).refused, 0);
    }

    void moduleThatThrowsOrDoesNotReturnIsNamed_data()
    {
        Table::of<bool, QString>({{"throws", false, "no licence dongle"}, {"holds the program up", true, "1001"}});
    }
    void moduleThatThrowsOrDoesNotReturnIsNamed()
    {
        const auto [late, problem] = Table::row<bool, QString>();
        SimulatedCell plant;
        plant.startUp();
        plant.open();
        plant.send('C', 1, 1);
        plant.modules->cameras.within = [&plant, late = late] {
            if (!late)
                throw std::runtime_error("no licence dongle");
            plant.scheduler.holdUp(1001);
        };
        plant.send('P', 5);
        const Alarm fault = plant.cell->alarms().alarms().value(0);
        QCOMPARE(fault.kind, Alarm::ModuleFault);
        QCOMPARE(fault.subject, QString("ksCoreCtrl: trigger()"));
        QVERIFY2(fault.detail.contains(problem), qPrintable(fault.detail));
        plant.modules->cameras.within = [] {};
        plant.send('P', 6);
        plant.deliver(2);
        plant.answer(10);
        QVERIFY(plant.replies().contains('G')); // the other station goes on
    }

    void resultThatComesWhileTheCellGoesDownIsDropped()
    {
        SimulatedCell plant;
        plant.startUp();
        plant.open();
        plant.send('C', 1, 1);
        plant.send('P', 5);
        const ICoreCtrl::ImageCallback late = plant.modules->cameras.deliver;
        const QStringList before = plant.panel;
        plant.cell.reset();
        late("cam1", QImage(8, 8, QImage::Format_Grayscale8));
        plant.scheduler.settle();
        QCOMPARE(plant.panel, before);
    }
};

QTEST_GUILESS_MAIN(CellWiringTest)
#include "tst_cellwiring.moc"
