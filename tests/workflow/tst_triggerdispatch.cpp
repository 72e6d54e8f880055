#include "config/ksGlobalConfig.h"
#include "support/FakeEngine.h"
#include "support/FakePort.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"
#include "support/TempHome.h"
#include "workflow/CZdCtrl.h"
#include "workflow/PlcLink.h"
#include "workflow/TriggerDispatch.h"

namespace {

/// A cell up to the camera: what was captured, sent and told.
struct Cell
{
    TempHome home;
    FakeEngine engine;
    FakePort port;
    PlcLink link{&port};
    ksGlobalConfig config;
    QStringList captured;
    bool full = false; ///< as many wait as may
    ManualScheduler scheduler;
    TriggerDispatch dispatch{config, link, scheduler, [this](const Trigger& trigger) {
                                 captured << trigger.camera;
                                 return !full;
                             }};
    std::unique_ptr<CZdCtrl> controller;
    QStringList panel, systemLog;

    Cell()
    {
        home.write("/user/plcIndex.json",
                   R"({"工位1": [{"Name": "五辐", "PlcIndex": 1}, {"Name": "钢圈", "PlcIndex": 2},
            {"Name": "五辐", "PlcIndex": 3}, {}, {"Name": "无索引"}], "工位2": [{"Name": "%3网状", "PlcIndex": 3}], "坏": 7})");
        for (int n : {1, 2}) {
            config.station(n).camKey = QStringLiteral("cam%1").arg(n);
            config.station(n).solution = QStringLiteral("工位%1").arg(n);
        }
        engine.solutions["备用"] = {}; // of no station
        config.onlineMode = config.useClearProtect = true;
        config.trigerFilter = 0;
        controller = std::make_unique<CZdCtrl>(&engine, home.path(), CZdCtrl::Accounting{scheduler, [] { return 0; }});
        controller->initialise();
        dispatch.setController(controller.get());
        QObject::connect(&dispatch, &TriggerDispatch::sgShowLog, [this](int station, const QString& text) {
            panel << QString::number(station) + QLatin1Char('|') + withoutTime(text);
        });
        QObject::connect(&dispatch, &TriggerDispatch::sgSystemLog,
                         [this](const QString& text) { systemLog << withoutTime(text); });
    }

    static QString withoutTime(QString text)
    {
        return text.replace(QRegularExpression(QStringLiteral("\\d\\d:\\d\\d:\\d\\d \\d\\d\\d")), QStringLiteral("T"));
    }
};

} // namespace

class TriggerDispatchTest : public QObject
{
    Q_OBJECT

private slots:
    void modelFrameSwitchesBothStations()
    {
        Cell cell;
        const QSignalSpy selected(&cell.dispatch, &TriggerDispatch::sgSelModel);
        cell.dispatch.onModelIndices(2, 3);
        QCOMPARE(told(cell.config.station(1).runModel, cell.config.station(2).runModel), "钢圈|%3网状");
        QCOMPARE(cell.systemLog, QStringList({"★工位1:切换型号为[钢圈],型号索引ID为[2],时间:T",
                                              "★工位2:切换型号为[%3网状],型号索引ID为[3],时间:T"}));
        QCOMPARE(cell.panel.size(), 2);
        QCOMPARE(selected.size(), 2);
        cell.dispatch.onTrigger(1);
        cell.dispatch.onTrigger(2);
        QCOMPARE(cell.captured, QStringList({"cam1", "cam2"}));
        // Only station 1 changes; station 2 is looked at again and stays as it is.
        cell.dispatch.onModelIndices(3, 3);
        QCOMPARE(told(cell.config.station(1).runModel, cell.systemLog.size()), "五辐|3");
        QVERIFY(cell.port.sent.isEmpty());
    }

    void repeatedPairIsLookedUpAgainOnlyAfterTheTableChanged()
    {
        Cell cell;
        cell.dispatch.onModelIndices(8, 3);
        cell.controller->plcIndices().setTable("工位1", {{"新型号", 8}});
        cell.dispatch.onModelIndices(8, 3);
        QCOMPARE(cell.config.station(1).runModel, QString());
        cell.dispatch.forgetLastIndices();
        cell.dispatch.onModelIndices(8, 3);
        QCOMPARE(cell.config.station(1).runModel, QStringLiteral("新型号"));
        QVERIFY(cell.systemLog.last().contains("切换型号为[新型号]"));
        cell.dispatch.forgetLastIndices();
        cell.dispatch.onModelIndices(-1, -1); // what the first pair ever is compared with
        QVERIFY(cell.systemLog.last().contains("型号清零"));
    }

    void indexThatWasUnknownSwitchesToItsNewModel()
    {
        Cell cell;
        cell.dispatch.onModelIndices(1, 1);
        cell.dispatch.onModelIndices(7, 1);
        cell.controller->plcIndices().setTable("工位1", {{"五辐", 1}, {"新型号", 7}});
        cell.dispatch.onModelIndices(7, 2);
        QCOMPARE(told(cell.config.station(1).runModel, cell.panel.filter("切换型号为[新型号]").size()), "新型号|1");
    }

    void stationWhoseSolutionTheEngineDoesNotListIsNoSilence()
    {
        Cell cell;
        cell.config.station(2).solution = "没有";
        cell.dispatch.onModelIndices(2, 4);
        cell.dispatch.onTrigger(2);
        QCOMPARE(cell.port.words(0), QStringLiteral("0 0 999 0 0 0 0 0"));
    }

    void triggerOnTopOfTooManyIsAnsweredAtOnce()
    {
        Cell cell;
        cell.dispatch.onModelIndices(2, 3);
        cell.full = true;
        cell.dispatch.onTrigger(1);
        QCOMPARE(cell.port.words(0), QStringLiteral("0 0 999 0 0 0 0 0"));
        QCOMPARE(cell.panel.last(), QStringLiteral("1|T:等待的触发过多，不能拍照！！！"));
    }

    void unknownIndexIsToldAndRefusedWith999()
    {
        Cell cell;
        cell.dispatch.onModelIndices(9, 8);
        QCOMPARE(cell.systemLog, QStringList({"★工位1:型号切换失败,对应的索引不存在,型号索引ID为[9],时间:T",
                                              "★工位2:型号切换失败,对应的索引不存在,型号索引ID为[8],时间:T"}));
        QCOMPARE(cell.panel,
                 QStringList({"1|T::型号设置失败,模型库中不存在索引9", "2|T::型号设置失败，模型库中不存在索引8"}));
        cell.dispatch.onTrigger(2);
        QVERIFY(cell.captured.isEmpty());
        QCOMPARE(told(cell.port.commands(), cell.port.words(0), cell.port.words(1)),
                 "GH|0 0 999 0 0 0 0 0|7 50 0 0 0 0 0 0");
        QCOMPARE(cell.panel.last(), QStringLiteral("2|T::该型号ID:8在模型库中不存在，不能拍照！！！"));
        QCOMPARE(cell.systemLog.last(),
                 QStringLiteral("●工位2:收到触发信号,因索引不合法所以没触发相机拍照,发送了999角度数据,"
                                "型号为[空],型号索引ID为[8],时间:T"));
    }

    void clearedIndexGetsNoAnswer()
    {
        Cell cell;
        cell.dispatch.onModelIndices(1, -5);
        cell.dispatch.onModelIndices(0, -5);
        QCOMPARE(cell.systemLog.mid(1),
                 QStringList({"★工位2:型号清零,型号索引ID为[-5],时间:T", "★工位1:型号清零,型号索引ID为[0],时间:T"}));
        cell.dispatch.onTrigger(1);
        QVERIFY(cell.captured.isEmpty() && cell.port.sent.isEmpty());
        QCOMPARE(cell.systemLog.last(), QStringLiteral("●工位1:收到触发信号,因索引不合法所以没触发相机拍照,型号为[空],"
                                                       "型号索引ID为[0],时间:T"));
    }

    void offlineEveryTriggerCapturesAndModelFramesAreIgnored()
    {
        Cell cell;
        cell.config.onlineMode = false;
        cell.dispatch.onModelIndices(1, 3);
        for (const int station : {-1, 0, 1, 3}) // three of them no station
            cell.dispatch.onTrigger(station);
        QCOMPARE(cell.captured, QStringList("cam1"));
        QVERIFY(cell.systemLog.isEmpty() && cell.config.station(1).runModel.isEmpty());
        cell.config.onlineMode = true;
        cell.config.useClearProtect = false;
        cell.dispatch.onTrigger(2);
        QCOMPARE(cell.captured, QStringList({"cam1", "cam2"}));
    }

    void secondTriggerIsDroppedUntilTheFilterTimeIsOver()
    {
        Cell cell;
        cell.config.onlineMode = false;
        cell.config.trigerFilter = 1000; // milliseconds
        for (const int station : {1, 1, 2})
            cell.dispatch.onTrigger(station);
        QCOMPARE(cell.captured, QStringList({"cam1", "cam2"}));
        cell.scheduler.advance(999);
        cell.dispatch.onTrigger(1);
        QCOMPARE(cell.captured.size(), 2);
        cell.scheduler.advance(1);
        cell.dispatch.onTrigger(1);
        QCOMPARE(told(cell.captured.last(), cell.captured.size()), "cam1|3");
    }

    void framesBeforeTheControllerExistsAreNotForgotten()
    {
        Cell cell;
        cell.dispatch.setController(nullptr);
        cell.dispatch.onModelIndices(1, 3);
        cell.dispatch.setController(cell.controller.get());
        cell.dispatch.onModelIndices(1, 3);
        QCOMPARE(cell.config.station(1).runModel, QString());
        cell.dispatch.onModelIndices(3, 3);
        QCOMPARE(cell.config.station(1).runModel, QStringLiteral("五辐"));
    }

    void indexTableComesBackTheSameAndASpoiledOneIsKept()
    {
        const TempHome home;
        PlcIndexTable table(home.path());
        table.setTable("工位1", {{"乙", 2}, {"甲", 2}, {"零", 0}});
        QVERIFY(table.save());
        PlcIndexTable again(home.path());
        again.load();
        QCOMPARE(again.table("工位1").size(), 3);
        QCOMPARE(told(again.modelOf("工位1", 2), again.modelOf("工位1", 0), again.modelOf("工位2", 2)), "乙||");
        home.write("/user/plcIndex.json", "{\"工位1\": [\n{\"Name\": ");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("plcIndex.json, line 2"));
        again.load();
        QVERIFY(again.table("工位1").isEmpty() && again.save());
        QCOMPARE(home.keptAside("/user/plcIndex.json").size(), 1);
    }

    void whatAnIndexTableLosesIsNamedAndKept()
    {
        const TempHome home;
        const QByteArray content = R"({"工位1": [{"Name": "甲", "PlcIndex": "5"}, {"Name": "乙", "PlcIndex": 2},
                                      "丙", {"PlcIndex": 1.5}], "工位2": 7})";
        home.write("/user/plcIndex.json", content);
        for (const char* place : {"\\[0\\].*甲", "\\[2\\]", "\\[3\\]: \"Name\"", "\\[3\\]: \"PlcIndex\"", "工位2"})
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QString("plcIndex\\.json.*") + place));
        PlcIndexTable table(home.path());
        table.load();
        QCOMPARE(told(table.table("工位1").value("甲"), table.modelOf("工位1", 2)), "0|乙");
        QVERIFY(table.save() && table.save());
        const QStringList kept = home.keptAside("/user/plcIndex.json");
        QCOMPARE(kept.size(), 1);
        QCOMPARE(home.read("/user/" + kept.first()), content);
    }

    void selectedModelIsShownOnTheLabel()
    {
        Cell cell;
        const QSignalSpy label(cell.controller->stationObject("工位1"), &Station::sgShowModeName);
        QVERIFY(!cell.controller->selectModel("工位1", "") && cell.controller->selectModel("没有", "五辐"));
        QCOMPARE(label.size(), 0);
        QVERIFY(cell.controller->selectModel("工位1", "五辐"));
        QCOMPARE(label.first().at(0).toString(), QStringLiteral("工位1"));
        const QString text = label.first().at(1).toString();
        QVERIFY2(text.contains("当前检测型号: 工位1_五辐< /span>< /h4>< /body>< /html>"), qPrintable(text));
    }
};

QTEST_GUILESS_MAIN(TriggerDispatchTest)
#include "tst_triggerdispatch.moc"
