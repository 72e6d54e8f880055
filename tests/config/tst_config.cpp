#include "common/Calibration.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <valvecell/HomeFiles.h>

#include <cmath>
#include <limits>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {
const QString globalFile = QStringLiteral("/user/globalConfig.json");
const QString systemFile = QStringLiteral("/user/systemConfig.ini");
} // namespace

class ConfigTest : public QObject
{
    Q_OBJECT

private slots:
    void spoiledGlobalConfigIsNamedAndKept_data()
    {
        Table::of<QByteArray, QString>({{"truncated", "{\"onlineMode\": true,\n\"length_1\": 1", "line 2"},
                                        {"empty", QByteArray(), "globalConfig.json"},
                                        {"array", "[1, 2]", "not an object"},
                                        {"binary", QByteArray(1000, '\xff'), "line 1"}});
    }
    void spoiledGlobalConfigIsNamedAndKept()
    {
        const auto [content, message] = Table::row<QByteArray, QString>();
        const TempHome home;
        home.write(globalFile, content);
        ksGlobalConfig config;
        config.trigerFilter = 77;
        QString problems;
        QVERIFY(!config.load(&problems));
        QVERIFY2(problems.contains(message) && problems.contains("globalConfig.json"), qPrintable(problems));
        QCOMPARE(config.trigerFilter, 77);
        QVERIFY(config.save());
        const QStringList kept = home.keptAside(globalFile);
        QCOMPARE(kept.size(), content.isEmpty() ? 0 : 1);
        if (!kept.isEmpty())
            QCOMPARE(home.read("/user/" + kept.first()), content);
        QVERIFY(config.load());
    }

    void missingOrEmptyObjectKeepsFieldsAndAbsentKeysGetDefaults()
    {
        const TempHome home;
        ksGlobalConfig config;
        config.station(1).twoPoint.length = 5;
        config.station(1).fourPoint.xOffset = 3;
        QVERIFY(config.load());
        home.write(globalFile, "{}");
        QVERIFY(config.load());
        QCOMPARE(config.station(1).twoPoint.length, 5.0);
        home.write(globalFile, R"({"onlineMode": true, "station1_4p": {}})");
        QVERIFY(config.load() && config.onlineMode);
        QCOMPARE(config.station(1).twoPoint.length, 1000.0);
        QCOMPARE(config.station(1).twoPoint.point2, QPoint(100, 100));
        QCOMPARE(told(config.station(2).twoPoint.scale, config.trigerFilter, config.station(1).fourPoint.xOffset),
                 "1|1000|3");
    }

    void wrongTypesAreNamedAndOthersAreRead()
    {
        const TempHome home;
        home.write(globalFile, R"({"trigerFilter": "100", "pointCircle": 1.5, "length_1": [], "onlineMode": 1,
                                "station_camkey_1": 7, "StationScale_2": 0.25, "station2_4p": {"m11": true, "dx": 4}})");
        ksGlobalConfig config;
        QString problems;
        QVERIFY(!config.load(&problems));
        for (const char* key : {"trigerFilter", "pointCircle", "length_1", "onlineMode", "station_camkey_1", "m11"})
            QVERIFY2(problems.contains(QLatin1String("\"") + key + "\""), key);
        QVERIFY2(problems.contains("the calibration of station 1"), qPrintable(problems)); // a length without a scale
        QCOMPARE(problems.count('\n'), 6);
        QCOMPARE(told(config.trigerFilter, config.pointCircle, config.station(2).twoPoint.scale), "1000|20|0.25");
        QCOMPARE(config.station(2).fourPoint.map[2], 4.0);
        const QByteArray written = home.read(globalFile);
        QVERIFY(config.save() && config.save());
        QCOMPARE(home.keptAside(globalFile).size(), 1);
        QCOMPARE(home.read("/user/" + home.keptAside(globalFile).first()), written);
        home.write(globalFile, R"({"onlineMode": true, "station1_4p": {"m11": 1, "of a later version": 5}})");
        QVERIFY(config.load() && config.save());
        QCOMPARE(home.keptAside(globalFile).size(), 2);
    }

    void globalConfigComesBackTheSame()
    {
        const TempHome home;
        ksGlobalConfig config;
        const double nan = std::numeric_limits<double>::quiet_NaN();
        config.station(1).camKey = QStringLiteral("相机\"1\\");
        config.station(2).solution = QStringLiteral("工位2");
        config.station(2).swapXY = config.use4pointstand = true;
        config.station(1).twoPoint.scale = 0.1 + 0.2;
        config.station(1).twoPoint.xOffset = nan;
        config.station(1).twoPoint.yOffset = -1 / 0.0;
        config.station(2).fourPoint.map = {1.5, -2, 3e-9, 1e300, nan, 6};
        config.station(2).fourPoint.pixelPoints[3] = {-7, 9};
        config.station(2).fourPoint.realPoints[0] = {0.001, 5000.25};
        QVERIFY(config.save());
        ksGlobalConfig again;
        QVERIFY(again.load());
        const StationConfig &one = again.station(1), &two = again.station(2);
        QCOMPARE(told(one.camKey, one.twoPoint.scale, one.twoPoint.xOffset, one.twoPoint.yOffset),
                 "相机\"1\\|0.30000000000000004|nan|-inf");
        QCOMPARE(told(two.fourPoint.map[2], two.fourPoint.map[3], two.fourPoint.map[4]), "3e-09|1e+300|nan");
        QCOMPARE(two.fourPoint.pixelPoints[3], QPoint(-7, 9));
        QCOMPARE(two.fourPoint.realPoints[0], QPointF(0.001, 5000.25));
        QCOMPARE(told(again.stationOfSolution("工位2"), again.stationOfSolution("")), "2|0");
        const QByteArray first = home.read(globalFile);
        QVERIFY(again.save());
        QCOMPARE(home.read(globalFile), first);
    }

    void filesStayAsPlantsKnowThem_data()
    {
        Table::of<QString, QString, QByteArray>(
            {{"set-up", globalFile, "\"%1\"",
              "station_camkey_1 station_camkey_2 station_solution_1 station_runModel_2 station_xytrans_1 "
              "use_clear_protect onlineMode point1_x_1 point1_y_1 point2_x_1 point2_y_1 length_1 StationScale_1 "
              "StationXOffset_1 StationYOffset_1 point1_x_2 StationYOffset_2 pointCircle trigerFilter use4pointstand "
              "station1_4p bXYTrans pixpoint1_x pixpoint4_y Realpoint1_x Realpoint4_y testPoint_x testPoint_y xoffset "
              "yoffset m11 m12 m21 m22 dx dy station2_4p"},
             {"settings", systemFile, "%1\n",
              "[COM] Baute=115200 Port=COM3 [CheckThread] Enable_RltImg=false Enable_SrcImg=false days=7 days_dir=30 "
              "spacesize=10 [Image] RltImgSave_st1=false RltImgSave_st2=false SrcImgSave_st1=false "
              "SrcImgSave_st2=false [TrigDetector] FilterTime=10 [language] select=Chinese"}});
    }
    void filesStayAsPlantsKnowThem()
    {
        const auto [file, form, known] = Table::row<QString, QString, QByteArray>();
        const TempHome home;
        ksSysConfig config;
        QVERIFY(config.filePath.endsWith("//user//systemConfig.ini"));
        config.load();
        QVERIFY(config.save() && ksGlobalConfig().save());
        const QString text = home.read(file).replace("\r\n", "\n");
        int from = 0;
        for (const QString& key : QString(known).split(' ')) { // in their fixed order
            from = text.indexOf(form.arg(key), from);
            QVERIFY2(from >= 0, qPrintable(key));
        }
        QCOMPARE(text.count(':'), file == globalFile ? 31 + 2 * 27 : 0);
    }

    void pixelsBecomeMachineCoordinatesAndBack_data()
    {
        const QByteArray scale = R"("StationScale_2": 0.5, "StationXOffset_2": 10, "StationYOffset_2": 20)";
        const QByteArray map = R"("m11": 2, "m21": 3, "dx": 1, "m12": -1, "m22": 0.5, "dy": 4, "xoffset": 100)";
        const auto twoPoint = [](const QByteArray& keys) { return "{" + keys + "}"; };
        const auto fourPoint = [](const QByteArray& keys) {
            return R"({"StationScale_2": 9, "use4pointstand": true, "station2_4p": {)" + keys + "}}";
        };
        // of the pixel (100.5, 200.25); millimetres per pixel along x, along y and in the mean
        Table::of<QByteArray, bool, QPointF, QVector<double>>(
            {{"two points", twoPoint(scale), true, QPointF(60.25, 120.125), {0.5, 0.5, 0.5}},
             {"two points swapped",
              twoPoint(scale + R"(, "station_xytrans_2": true)"),
              true,
              QPointF(120.125, 60.25),
              {0.5, 0.5, 0.5}},
             {"mirrored", twoPoint(R"("StationScale_2": -2)"), true, QPointF(-201, -400.5), {2, 2, 2}},
             {"scale of 0", twoPoint(R"("StationScale_2": 0)"), false, QPointF(0, 0), {0, 0, 0}},
             {"four points", fourPoint(map), true, QPointF(902.75, 3.625), {std::sqrt(5), std::sqrt(9.25), 2}},
             {"four points swapped",
              fourPoint(map + R"(, "yoffset": -7, "bXYTrans": true)"),
              true,
              QPointF(-3.375, 902.75),
              {std::sqrt(5), std::sqrt(9.25), 2}},
             {"no map", fourPoint(R"("xoffset": 1)"), false, QPointF(1, 0), {0, 0, 0}},
             {"all on a line, but for rounding",
              fourPoint(R"("m11": 0.1, "m21": 0.3, "m12": 0.30000000000000004, "m22": 0.9, "dx": 0, "dy": 0)"),
              false,
              QPointF(70.125, 210.375),
              {std::sqrt(0.1), std::sqrt(0.9), 0}}});
    }
    void pixelsBecomeMachineCoordinatesAndBack()
    {
        const auto [json, invertible, machine, scales] = Table::row<QByteArray, bool, QPointF, QVector<double>>();
        const TempHome home;
        home.write(globalFile, json);
        ksGlobalConfig config;
        QVERIFY(config.load());
        const QPointF pixel(100.5, 200.25);
        // what the station answers, and what other modules read from the file
        for (const Calibration& calibration :
             {config.calibration(2), Calibration::ofStation(QJsonDocument::fromJson(json).object(), 2)}) {
            QCOMPARE(calibration.toMachine(pixel), machine);
            const auto back = calibration.toPixel(machine);
            QCOMPARE(back.has_value(), invertible);
            QVERIFY(!back || QLineF(*back, pixel).length() < 1e-9);
            QVERIFY(std::abs(calibration.mmPerPixelX() - scales[0]) < 1e-12);
            QVERIFY(std::abs(calibration.mmPerPixelY() - scales[1]) < 1e-12);
            QVERIFY(std::abs(calibration.mmPerPixel() - scales[2]) < 1e-7);
        }
    }

    void noNumberHasNoWayBack()
    {
        for (const double odd : {qQNaN(), qInf()}) {
            QVERIFY(!Calibration::twoPoint(odd).toPixel({1, 1}));
            QVERIFY(!Calibration::twoPoint(1, {odd, 0}).toPixel({1, 1}));
            QVERIFY(!Calibration::fourPoint({odd, 0, 0, 0, 1, 0}).toPixel({1, 1}));
            QCOMPARE(Calibration::twoPoint(2).toMachine({1, odd}).x(), 2.0); // one axis never spoils the other
        }
    }

    void unwritableConfigurationIsReported()
    {
        const TempHome home;
        home.block();
        QString error;
        QVERIFY(!ksGlobalConfig().save(&error));
        QVERIFY2(error.contains("globalConfig.json"), qPrintable(error));
        QVERIFY(!ksSysConfig().save());
    }

    void settingsFileListsWhatItHasOfOldAndWhatIsSet()
    {
        const TempHome home;
        ksSysConfig config;
        QVERIFY(config.save());
        const auto keys = [&home] { return QSettings(home.path(systemFile), QSettings::IniFormat).allKeys(); };
        QCOMPARE(keys().size(), 13);
        config.failedDays = 90;
        QVERIFY(config.save());
        QVERIFY(keys().contains("CheckThread/days_failed") && keys().size() == 14);
        config.failedDays = 0;
        QVERIFY(config.save());
        config.failedDays = 5;
        config.load();
        QCOMPARE(config.failedDays, 0);
    }

    void settingsThatDoNotConvertAreDefaults()
    {
        const TempHome home;
        home.write(systemFile, "[COM]\nBaud=9600\nPort=/工厂/串口\n[CheckThread]\ndays=sieben\nspacesize=99999999999\n"
                               "Enable_SrcImg=perhaps\nEnable_RltImg=1\n[TrigDetector]\nFilterTime=-4\n"
                               "[Plant]\nown=kept\n");
        ksSysConfig config;
        config.cleanDays = 99;
        config.load();
        QCOMPARE(told(config.baudRate, config.comPort, config.cleanDays, config.minFreeSpace),
                 "115200|/工厂/串口|7|10");
        QVERIFY(!config.cleanSrcImages && config.cleanRltImages);
        QCOMPARE(config.filterTime, -4);
        QVERIFY(config.save());
        ksSysConfig again;
        again.load();
        QCOMPARE(again.comPort, config.comPort);
        QCOMPARE(again.filterTime, -4);
        for (const char* unknown : {"Baud=9600\n", "[Plant]\nown=kept\n"})
            QVERIFY2(home.read(systemFile).replace("\r\n", "\n").contains(unknown), unknown);
    }

    void settingsThatAreLostAreNamedAndKept_data()
    {
        Table::of<QByteArray, QStringList>(
            {{"byte-order mark", "\xEF\xBB\xBF[COM]\nPort=COM9\n", {}},
             {"mark and comment", "\xEF\xBB\xBF; by hand\n[COM]\r\nPort=COM9\r\n", {}},
             {"stray line", "[COM]\nwhat is this\nPort=COM9\n", {"line 2"}},
             {"wrong values",
              "[COM]\nPort=COM9\nBaute=fast\n[CheckThread]\nEnable_SrcImg=perhaps\ndays=1,5\n",
              {"COM/Baute=fast", "Enable_SrcImg=perhaps", "days=1,5"}},
             {"no settings at all",
              "\x7f"
              "ELF",
              {""}}});
    }
    void settingsThatAreLostAreNamedAndKept()
    {
        const auto [content, named] = Table::row<QByteArray, QStringList>();
        const TempHome home;
        home.write(systemFile, content);
        for (const QString& place : named)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("systemConfig\\.ini.*" + place));
        ksSysConfig config;
        config.load();
        const QString port = content.contains("COM9") ? "COM9" : "COM3";
        QCOMPARE(config.comPort, port);
        QVERIFY(config.save() && config.save()); // kept once
        QCOMPARE(home.keptAside(systemFile).size(), named.isEmpty() ? 0 : 1);
        if (!named.isEmpty())
            QCOMPARE(home.read("/user/" + home.keptAside(systemFile).first()), content);
        ksSysConfig again;
        again.load();
        QCOMPARE(again.comPort, port);
    }

#ifdef Q_OS_UNIX
    void pipeInPlaceOfAFileKeepsNobodyWaiting()
    {
        const TempHome home;
        for (const QString& file : {globalFile, systemFile})
            QCOMPARE(mkfifo(QFile::encodeName(home.path(file)).constData(), 0600), 0);
        ksSysConfig settings;
        settings.load();
        QVERIFY(settings.save());
        ksGlobalConfig config;
        QString problems;
        QVERIFY(!config.load(&problems));
        QVERIFY2(problems.contains("not a regular file"), qPrintable(problems));
        QVERIFY(config.save() && config.load());
    }
#endif

    void relativeHomeIsNotAppliedTwice()
    {
        const QTemporaryDir folder;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(folder.path()) && QDir().mkdir("demo"));
        qputenv("VALVECELL_HOME", "demo");
        HomeFiles::fixHome();
        const QString home = HomeFiles::home();
        QVERIFY(QDir::setCurrent(home));
        QCOMPARE(HomeFiles::home(), home);
        QVERIFY(QDir::setCurrent(before));
        qunsetenv("VALVECELL_HOME");
    }
};

QTEST_GUILESS_MAIN(ConfigTest)
#include "tst_config.moc"
