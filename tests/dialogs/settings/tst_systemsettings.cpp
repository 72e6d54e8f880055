#include "common/forms/ChoiceBox.h"
#include "config/AccessPolicy.h"
#include "config/CellLimits.h"
#include "config/ShiftConfig.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/settings/QSystemSettingUI.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <valvecell/ISerialPorts.h>

#include <QMenu>
#include <QToolButton>

namespace {

const QByteArray iniFile = "/user/systemConfig.ini";
const QByteArray jsonFile = "/user/globalConfig.json";

struct FakePorts : ISerialPorts
{
    std::function<QVector<FoundPort>()> finder() const override
    {
        return [ports = ports] { return ports; };
    }
    QString problemOf(const QString& name) const override { return name == "tcp:plc" ? "缺少端口号" : QString(); }

    QVector<FoundPort> ports;
};

/// A cell of two stations with its files, and a settings dialog on it.
struct Bench
{
    TempHome home;
    ksSysConfig system;
    ksGlobalConfig global;
    AccessPolicy access;
    CellLimits limits;
    ShiftConfig shifts;
    QSystemSettingUI dialog{system, global, access, limits, shifts};
    DialogDriver driver{dialog};
    QVector<AuditChanges> applied;

    Bench()
    {
        global.station(1).camKey = QStringLiteral("相机A");
        global.station(2).camKey = QStringLiteral("相机B");
        global.station(1).solution = QStringLiteral("工位1");
        global.station(2).solution = QStringLiteral("工位2");
        system.save();
        global.save();
        equip(dialog);
        QObject::connect(&dialog, &QSystemSettingUI::settingsApplied,
                         [this](const AuditChanges& changes) { applied.append(changes); });
        dialog.show();
    }

    static void equip(QSystemSettingUI& dialog)
    {
        dialog.setCameras({QStringLiteral("相机A"), QStringLiteral("相机B"), QStringLiteral("相机C")});
        dialog.setSolutions({QStringLiteral("工位1"), QStringLiteral("工位2"), QStringLiteral("工位3")});
        dialog.setLanguages({{"Chinese", QStringLiteral("中文")}, {"English", "English"}});
    }

    void choose(const char* box, const QString& name) const
    {
        auto* choice = driver.get<ChoiceBox>(box);
        const int row = choice->findData(name);
        QVERIFY2(row >= 0, qPrintable(name));
        choice->setCurrentIndex(row);
    }

    QByteArray files() const { return home.read(iniFile) + home.read(jsonFile) + home.read("/user/shifts.json"); }
};

} // namespace

class SystemSettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void wrongFieldIsShownWhileItIsTyped_data()
    {
        Table::of<QByteArray, QString, QString>(
            {{"nothing", "filterEdit", "", "触发过滤时间：请输入数字"},
             {"letters", "filterEdit", "1O00", "“1O00”不是整数"},
             {"decimals", "daysEdit", "7.5", "图像保留天数：“7.5”不是整数"},
             {"negative", "burstEdit", "-1", "应在0到1000之间"},
             {"too much", "daysEdit", "36501", "应在1到36500之间"},
             {"wraps 32 bits", "baudEdit", "4294967297", "应在1到10000000之间"},
             {"wraps 64 bits", "spaceEdit", "99999999999999999999999", "应在0到1000000之间"},
             {"no port", "portEdit", "  ", "串口端口：不能为空"},
             {"port with an apostrophe", "portEdit", "COM'3", "单引号"},
             {"endless port", "portEdit", QString(251, 'x'), "文字太长"},
             {"port of Linux", "portEdit", "/dev/serial/by-id/usb-串口", ""},
             {"shift of no time", "shiftsEdit", "06:00, 24:00", "班次时间“24:00”不对"},
             {"shift twice", "shiftsEdit", "6:00 06:00", "重复"},
             {"shifts as one types them", "shiftsEdit", "6:00，14:00、22:00", ""},
             {"full-width digits", "filterEdit", "１５００", ""},
             {"filter off", "filterEdit", "0", ""}});
    }
    void wrongFieldIsShownWhileItIsTyped()
    {
        const auto [field, typed, problem] = Table::row<QByteArray, QString, QString>();
        Bench bench;
        const QByteArray before = bench.files();
        bench.driver.type(field, typed);
        const QString shown = bench.driver.message();
        QVERIFY2(problem.isEmpty() ? shown.isEmpty() : shown.contains(problem), qPrintable(shown));
        QCOMPARE(bench.driver.canPress("okButton"), problem.isEmpty());
        QCOMPARE(bench.driver.canPress("applyButton"), problem.isEmpty());
        QTest::keyClick(bench.driver.get<QLineEdit>(field), Qt::Key_Return);
        QCOMPARE(bench.dialog.isVisible(), !problem.isEmpty());
        QCOMPARE(bench.files() == before, !problem.isEmpty());
    }

    void portIsChosenByTheNameThatFollowsItsConverter()
    {
        Bench bench;
        auto* button = bench.driver.get<QToolButton>("portButton");
        QVERIFY2(!button->isVisible(), "a module that knows no ports");
        FakePorts ports;
        ports.ports = {{"/dev/serial/by-id/usb-FTDI-if00", "/dev/ttyUSB3", "FT232R, FTDI & Co"},
                       {"/dev/serial/by-id/usb-1a86", "/dev/ttyUSB0", {}},
                       {"/dev/ttyS0", "/dev/ttyS0", {}}};
        bench.dialog.setPorts(&ports);
        const auto offered = [&] {
            QStringList texts;
            for (const QAction* action : button->menu()->actions())
                texts << action->text() + (action->isEnabled() ? "" : " -");
            return texts.join('|');
        };
        emit button->menu()->aboutToShow();
        QTRY_COMPARE(offered(), "FT232R, FTDI && Co (ttyUSB3)|usb-1a86 (ttyUSB0)|ttyS0");
        button->menu()->actions().first()->trigger();
        QCOMPARE(bench.driver.text("portEdit"), ports.ports[0].name);
        bench.driver.press("applyButton");
        QCOMPARE(bench.system.comPort, ports.ports[0].name);
        bench.driver.type("portEdit", "tcp:plc");
        QVERIFY(bench.driver.message().contains("缺少端口号") && !bench.driver.canPress("okButton"));
        bench.driver.type("portEdit", "tcp:plc:4001"); // the list is a suggestion
        QVERIFY(bench.driver.message().isEmpty() && bench.driver.canPress("okButton"));
        ports.ports.clear();
        bench.dialog.setPorts(&ports);
        emit button->menu()->aboutToShow();
        QTRY_COMPARE(offered(), "没有找到串口 -");
    }

    void spaceThatShortensTheKeepingIsSaidAtItsField()
    {
        Bench bench;
        bench.dialog.setImageDisk(20 * 1024, false);
        bench.driver.type("spaceEdit", "20");
        QCOMPARE(bench.driver.message(), QString());
        bench.driver.type("spaceEdit", "21");
        QVERIFY(bench.driver.message().contains("现在只剩20.0 GB") && bench.driver.canPress("okButton"));
        bench.dialog.setImageDisk(20 * 1024, true);
        bench.driver.type("spaceEdit", "1");
        QVERIFY(bench.driver.message().contains("只保留1天"));
    }

    void reportsThatCannotBeWrittenAreNotSwitchedOn()
    {
        Bench bench;
        bench.driver.type("reportFolderEdit", "Z:reports");
        QVERIFY2(bench.driver.canPress("okButton"), "nothing is written there");
        bench.choose("reportWhenBox", "shift");
        QVERIFY(bench.driver.message().contains("“Z:reports”不是完整路径") && !bench.driver.canPress("okButton"));
        bench.driver.act({"reportFolderEdit=" + bench.home.path(), "reportPdfCheck"});
        QVERIFY(bench.driver.message().contains("至少选择一种格式") && !bench.driver.canPress("okButton"));
        bench.driver.act({"reportXlsxCheck", "reportHeadingEdit=三号线", "shiftsEdit=6:00 18:00", "okButton"});
        QCOMPARE(listed(bench.applied.value(0)),
                 "report_folder:>" + bench.home.path() +
                     " report_heading:>三号线 report_pdf:true>false report_when:off>shift report_xlsx:false>true "
                     "shift_begins:>6:00 18:00");
        ShiftConfig stored;
        stored.load();
        QCOMPARE(told(stored.reportWhen, stored.begins), "shift|6:00 18:00");
    }

    void forwardingNeedsABrokerAndNames()
    {
        Bench bench;
        bench.driver.press("plantOnCheck");
        for (const auto& [typed, problem] :
             {std::pair("plantGroupEdit=hall/2", "工厂或产线名称：名称不能含有"),
              std::pair("plantGroupEdit=hall 2", "本单元名称：名称不能为空"),
              std::pair("plantCellEdit=7", "请输入代理服务器地址"), std::pair("plantHostEdit=broker", ""),
              std::pair("plantCertificateEdit=a.crt", "须同时设置"), std::pair("plantKeyEdit=a.key", "")}) {
            bench.driver.act({typed});
            QVERIFY2(bench.driver.message().contains(problem), qPrintable(bench.driver.message()));
            QCOMPARE(bench.driver.canPress("okButton"), QByteArray(problem).isEmpty());
        }
        bench.driver.press("okButton");
        QVERIFY(bench.home.read("/user/plant.json").contains("\"plant_host\": \"broker\""));
        ForwardConfig stored;
        stored.load();
        QCOMPARE(told(stored.group, stored.cell, stored.on), "hall 2|7|true");
    }

    void everySettingHasOneField()
    {
        Bench bench;
        QStringList keys;
        const auto fields = bench.dialog.findChildren<QWidget*>();
        for (const QWidget* field : fields)
            if (field->property("settingKey").isValid())
                keys << field->property("settingKey").toString();
        keys.sort();
        QCOMPARE(keys,
                 SettingsStore(bench.system, bench.global, bench.access, bench.limits, bench.shifts).current().keys());
    }

    void everythingEditedIsStoredExactlyOnce()
    {
        Bench bench;
        bench.choose("cameraBox1", "相机C");
        bench.choose("solutionBox2", "工位3");
        bench.choose("languageBox", "English");
        for (const char* box : {"saveSource1", "saveResult2", "onlineCheck", "protectCheck", "fourPointCheck",
                                "cleanSource", "cleanResult", "engineerCheck", "onlyFailedCheck"})
            bench.driver.press(box);
        bench.driver.act({"filterEdit=２50", "burstEdit=3", "portEdit= /dev/ttyUSB0 ", "baudEdit=9600", "daysEdit=14",
                          "dirDaysEdit=60", "failedDaysEdit=90", "recordDaysEdit=0", "spaceEdit=25"});
        QEvent language(QEvent::LanguageChange); // what was typed stays
        QCoreApplication::sendEvent(&bench.dialog, &language);
        bench.driver.press("applyButton");
        QCOMPARE(bench.driver.question(), "工位1：尚未进行四点标定\n工位2：尚未进行四点标定");
        QVERIFY(bench.applied.isEmpty());
        bench.driver.press("firstAnswer");
        QVERIFY(bench.dialog.isVisible());
        QCOMPARE(told(bench.driver.message(), bench.driver.text("filterEdit")), "已保存|250");
        QVERIFY(!bench.driver.canPress("applyButton"));
        QCOMPARE(bench.applied.size(), 1);
        QCOMPARE(listed(bench.applied[0]),
                 "COM/Baute:115200>9600 COM/Port:COM3>/dev/ttyUSB0 CheckThread/Enable_RltImg:false>true "
                 "CheckThread/Enable_SrcImg:false>true CheckThread/days:7>14 CheckThread/days_dir:30>60 "
                 "CheckThread/days_failed:0>90 CheckThread/days_records:1095>0 CheckThread/spacesize:10>25 "
                 "Image/OnlyFailed:false>true Image/RltImgSave_st2:false>true "
                 "Image/SrcImgSave_st1:false>true "
                 "TrigDetector/FilterTime:10>3 engineer_only:false>true language/select:Chinese>English "
                 "onlineMode:false>true "
                 "station_camkey_1:相机A>相机C station_solution_2:工位2>工位3 trigerFilter:1000>250 "
                 "use4pointstand:false>true use_clear_protect:false>true");
        ksGlobalConfig stored;
        QVERIFY(stored.load());
        QCOMPARE(stored.text(), bench.global.text());
        QCOMPARE(stored.trigerFilter, 250);
        QVERIFY(bench.home.read("/user/access.json").contains("\"engineer_only\": true"));
        QCOMPARE(stored.station(1).camKey, "相机C");
        const QSettings ini(bench.home.path(iniFile), QSettings::IniFormat);
        QCOMPARE(ini.value("COM/Port").toString(), "/dev/ttyUSB0");
        QCOMPARE(told(ini.value("Image/RltImgSave_st2").toString(), bench.system.cleanDays), "true|14");
    }

    void cancelLeavesFilesAndFieldsAlone()
    {
        Bench bench;
        const QByteArray before = bench.files();
        bench.driver.act({"daysEdit=1", "onlineCheck", "cancelButton"});
        QVERIFY(!bench.dialog.isVisible());
        QCOMPARE(bench.files(), before);
        QVERIFY(!bench.global.onlineMode && bench.applied.isEmpty());
        bench.dialog.show();
        QCOMPARE(bench.driver.text("daysEdit"), "7");
        QVERIFY(!bench.driver.isChecked("onlineCheck"));
        QFile::remove(bench.home.path(jsonFile));
        bench.driver.press("okButton"); // without an edit nothing is written
        QVERIFY(!bench.dialog.isVisible() && bench.applied.isEmpty());
        QVERIFY(!QFile::exists(bench.home.path(jsonFile)));
    }

    void cameraUnpluggedWhileTheDialogIsOpen()
    {
        Bench bench;
        bench.choose("cameraBox1", "相机C");
        bench.dialog.setCameras({"相机A", "相机B"});
        QVERIFY(bench.driver.message().contains("“相机C”已不存在") && !bench.driver.canPress("okButton"));
        bench.dialog.setCameras({"相机A", "相机B", "相机C"});
        QVERIFY2(bench.driver.canPress("okButton"), "plugged in again");
        bench.choose("cameraBox1", "相机A");
        bench.dialog.setCameras({"相机B"});
        bench.dialog.setSolutions({});
        QCOMPARE(bench.driver.message(), "不存在：工位1相机“相机A”，工位1检测方案“工位1”，工位2检测方案“工位2”");
        QVERIFY2(bench.driver.canPress("okButton"), "what was stored before may stay");
        bench.driver.act({"daysEdit=9", "okButton"});
        QCOMPARE(told(bench.global.station(1).camKey, bench.global.station(2).solution), "相机A|工位2");
    }

    void oneCameraCannotServeBothStations()
    {
        Bench bench;
        bench.choose("cameraBox2", "相机A");
        QVERIFY(bench.driver.message().contains("同一个相机") && !bench.driver.canPress("okButton"));
        bench.choose("cameraBox2", "");
        QVERIFY(bench.driver.canPress("okButton"));
        bench.choose("solutionBox2", "工位1");
        QVERIFY(bench.driver.message().contains("同一个方案"));
    }

    void oneStationFormKeepsStationTwo()
    {
        Bench bench;
        bench.global.station(2).camKey = "相机A"; // as a cell of one station may have been left
        bench.global.save();
        bench.dialog.close();
        bench.dialog.setOneStation(true);
        bench.dialog.show();
        QVERIFY(!bench.driver.get<QWidget>("cameraBox2")->isVisible());
        bench.driver.act({"onlineCheck", "okButton"});
        QCOMPARE(told(listed(bench.applied.value(0)), bench.global.station(2).camKey), "onlineMode:false>true|相机A");
    }

    void secondDialogDoesNotUndoTheFirst()
    {
        Bench bench;
        QSystemSettingUI other(bench.system, bench.global, bench.access, bench.limits, bench.shifts);
        Bench::equip(other);
        other.show();
        bench.driver.act({"daysEdit=14", "okButton"});
        DialogDriver driver(other);
        QString applied;
        connect(&other, &QSystemSettingUI::settingsApplied,
                [&](const AuditChanges& changes) { applied = listed(changes); });
        driver.act({"dirDaysEdit=60", "okButton"});
        QCOMPARE(driver.question(), "");
        QVERIFY(!other.isVisible());
        QCOMPARE(told(bench.system.cleanDays, bench.system.cleanDirDays, applied), "14|60|CheckThread/days_dir:30>60");
    }

    void unwritableFilesChangeNothing_data() { Table::of<bool>({{"neither file", true}, {"only the second", false}}); }
    void unwritableFilesChangeNothing()
    {
        const auto [bothFiles] = Table::row<bool>();
        Bench bench;
        bench.driver.act({"daysEdit=14", "onlineCheck"});
        TempHome elsewhere; // the second file is looked for in the present home
        elsewhere.write("/blocked", "a file where a folder is needed");
        qputenv("VALVECELL_HOME", elsewhere.path("/blocked").toUtf8());
        if (bothFiles)
            bench.system.filePath = elsewhere.path("/blocked//user//systemConfig.ini");
        bench.driver.press("okButton");
        QVERIFY(bench.dialog.isVisible());
        QVERIFY2(bench.driver.message().contains(bothFiles ? "systemConfig.ini" : "globalConfig.json"),
                 qPrintable(bench.driver.message()));
        QVERIFY(bench.driver.message().startsWith("未能保存，设置没有改变") && bench.applied.isEmpty());
        QVERIFY(!bench.global.onlineMode);
        QCOMPARE(bench.system.cleanDays, 7);
        QVERIFY2(bench.home.read(iniFile).contains("days=7"), "the file that could be written is put back");
        QCOMPARE(bench.driver.text("daysEdit"), "14");
    }

    void handEditedFileIsShownBeforeItIsOverwritten_data()
    {
        Table::of<QByteArray, QByteArray, QByteArray, QString>(
            {{"setting", jsonFile, "\"trigerFilter\": 1000", "\"trigerFilter\": 2000",
              "globalConfig.json 已被改动：trigerFilter 1000 → 2000"},
             {"port", iniFile, "Port=COM3", "Port=COM8", "systemConfig.ini 已被改动：COM/Port COM3 → COM8"},
             {"calibration", jsonFile, "\"StationScale_2\": 1", "\"StationScale_2\": 3", "标定数据"},
             {"damaged", jsonFile, "\"onlineMode\": false,", "\"onlineMode\": tru,", "无法读取"},
             {"model of the running station", jsonFile, "\"station_runModel_1\": \"\"",
              "\"station_runModel_1\": \"W18\"", ""}});
    }
    void handEditedFileIsShownBeforeItIsOverwritten()
    {
        const auto [file, from, to, question] = Table::row<QByteArray, QByteArray, QByteArray, QString>();
        Bench bench;
        const QByteArray edited = bench.home.read(file).replace(from, to);
        QVERIFY(edited.contains(to));
        bench.home.write(file, edited);
        bench.driver.act({"daysEdit=14", "okButton"});
        QVERIFY2(question.isEmpty() == bench.driver.question().isEmpty() && bench.driver.question().contains(question),
                 qPrintable(bench.driver.question()));
        if (!question.isEmpty()) {
            QCOMPARE(bench.home.read(file), edited);
            bench.driver.press("firstAnswer");
        }
        QVERIFY(!bench.dialog.isVisible());
        QCOMPARE(listed(bench.applied.value(0)), "CheckThread/days:7>14");
        QVERIFY(!bench.home.read(file).contains(to));
        QCOMPARE(bench.home.keptAside(jsonFile).size(), QString(question) == "无法读取" ? 1 : 0);
    }

    void handEditedValuesCanBeTakenOver()
    {
        Bench bench;
        bench.global.station(1).runModel = "W18";
        bench.home.write(jsonFile, bench.home.read(jsonFile)
                                       .replace("\"trigerFilter\": 1000", "\"trigerFilter\": 2000")
                                       .replace("\"StationScale_2\": 1", "\"StationScale_2\": 3"));
        bench.driver.act({"daysEdit=14", "applyButton", "secondAnswer"});
        QCOMPARE(told(listed(bench.applied.value(0)), bench.global.trigerFilter), "trigerFilter:1000>2000|2000");
        QCOMPARE(told(bench.global.station(2).twoPoint.scale, bench.global.station(1).runModel), "3|W18");
        QCOMPARE(told(bench.driver.text("filterEdit"), bench.driver.text("daysEdit"), bench.system.cleanDays),
                 "2000|7|7");
    }
};

QTEST_MAIN(SystemSettingsTest)
#include "tst_systemsettings.moc"
