#include "common/Scheduler.h"
#include "config/ksGlobalConfig.h"
#include "db/StationDB.h"
#include "support/FakeEngine.h"
#include "support/FakePort.h"
#include "support/Table.h"
#include "workflow/IResultStore.h"
#include "workflow/PlcLink.h"
#include "workflow/ResultHandler.h"

namespace {

/// Writes what it is asked into one protocol with the frames sent before.
struct FakeStore : IResultStore
{
    FakePort& port;
    QStringList protocol;
    StationResult last;

    explicit FakeStore(FakePort& p)
        : port(p)
    {
    }
    QString saveSourceImage(int station, const QString& model, const QImage& image, bool) override
    {
        return note("source", station, model, image);
    }
    QString saveResultImage(int station, const QString& model, const QImage& image, bool) override
    {
        return note("result", station, model, image);
    }
    void insertResult(const StationResult& result) override
    {
        protocol << QStringLiteral("row after %1 frames").arg(port.sent.size());
        last = result;
    }
    QString note(const char* what, int station, const QString& model, const QImage& image)
    {
        protocol << QStringLiteral("%1 %2 %3 %4 after %5 frames")
                        .arg(QLatin1String(what), QString::number(station), model, QString::number(image.width()),
                             QString::number(port.sent.size()));
        return QStringLiteral("path/") + QLatin1String(what);
    }
};

struct Cell
{
    FakePort port;
    PlcLink link{&port};
    ksGlobalConfig config;
    ResultHandler handler{config, link, Scheduler::system()};
    FakeStore store{port};
    QStringList panel;
    QList<QPair<int, int>> shown; ///< station and width of each picture

    Cell()
    {
        config.station(1).solution = QStringLiteral("工位1");
        config.station(2).solution = QStringLiteral("工位2");
        TwoPointCalibration& calibration = config.station(1).twoPoint;
        calibration.scale = 0.5;
        calibration.xOffset = 10;
        calibration.yOffset = 20;
        handler.setStore(&store);
        QObject::connect(&handler, &ResultHandler::sgShowLog, [this](int station, const QString& text) {
            panel << QString::number(station) + QLatin1Char('|') + text.mid(13);
        });
        QObject::connect(&handler, &ResultHandler::sgShowImg,
                         [this](int station, const QImage& image) { shown << qMakePair(station, image.width()); });
        QObject::connect(&handler, &ResultHandler::sgShowSrcImg, [this](const QString& solution, const QImage& image) {
            shown << qMakePair(config.stationOfSolution(solution), image.width());
        });
    }

    /// The result of a trigger of its solution's station; station 1's when there is none.
    void finish(const QVariantMap& map)
    {
        Trigger trigger;
        trigger.station = qMax(1, config.stationOfSolution(map["solutionName"].toString()));
        trigger.solution = config.station(trigger.station).solution;
        trigger.plcIndex = 7;
        trigger.session = link.session();
        handler.onResult(trigger, map);
    }
    static QVariantMap result(const QString& solution, const QVariantMap& algo)
    {
        return {{"originImage", QImage(7, 7, QImage::Format_Grayscale8)},
                {"taskCali", true},
                {"solutionName", solution},
                {"taskName", QStringLiteral("五辐")},
                {"tasktime", 4.5},
                {"AlgoResult", algo}};
    }
    static QVariantMap found(double angle)
    {
        return {{"angle", angle},
                {"error", 0},
                {"score", 0.875},
                {"resultTip", QStringLiteral("成功")},
                {"image", QImage(9, 9, QImage::Format_RGB32)},
                {"centerPoint", QPointF(100.5, 200.25)}};
    }
};

} // namespace

class ResultHandlerTest : public QObject
{
    Q_OBJECT

private slots:
    void centreIsConvertedByTheCalibrationInForce_data()
    {
        Table::of<bool, bool, QString, QString>(
            {{"two points", false, false, "0 0 45 500 60 250 120 125", "center:(60.250,120.125)"},
             {"two points swapped", false, true, "0 0 45 500 120 125 60 250", "center:(120.125,60.250)"},
             // q = (2 * 100.5 + 3 * 200.25 + 1, -1 * 100.5 + 0.5 * 200.25 + 4) = (802.75, 3.625), plus (100, -200)
             {"four points", true, false, "0 0 45 500 902 750 -196 -375", "center:(902.750,-196.375)"},
             {"four points swapped", true, true, "0 0 45 500 -196 -375 902 750", "center:(-196.375,902.750)"}});
    }
    void centreIsConvertedByTheCalibrationInForce()
    {
        const auto [fourPoint, swap, words, line] = Table::row<bool, bool, QString, QString>();
        Cell cell;
        cell.config.use4pointstand = fourPoint;
        StationConfig& station = cell.config.station(1);
        station.swapXY = swap && !fourPoint;
        station.fourPoint.swapXY = swap && fourPoint;
        station.fourPoint.map = {2, 3, 1, -1, 0.5, 4};
        station.fourPoint.xOffset = 100;
        station.fourPoint.yOffset = -200;
        cell.finish(Cell::result("工位1", Cell::found(45.5)));
        QCOMPARE(cell.port.commands(), QByteArray("F"));
        QCOMPARE(cell.port.words(0), words);
        QCOMPARE(cell.panel, QStringList("1|五辐 angle :45.500 " + line));
    }

    void replyGoesFirstThenArchiveThenRow()
    {
        Cell cell;
        cell.finish(Cell::result("工位2", Cell::found(45.5)));
        QCOMPARE(cell.store.protocol, QStringList({"result 2 五辐 9 after 1 frames", "source 2 五辐 7 after 1 frames",
                                                   "row after 1 frames"}));
        const StationResult& row = cell.store.last;
        QCOMPARE(told(row.angle, row.errorType, row.matchScore), "45.5|0|87.5");
        QCOMPARE(QStringList({row.resultTip, row.threshBenchMark, row.stationName, row.value1, row.value2}),
                 QStringList({"成功", "2_五辐", "Station_2", "path/result", "2_五辐"}));
        QCOMPARE(cell.shown, (QList<QPair<int, int>>{{2, 9}}));
    }

    void recordKeepsWhatTheAnswerRestsOn()
    {
        Cell cell;
        QVariantMap answer = Cell::found(45.5);
        cell.finish(Cell::result("工位2", answer));
        const QString sent = "plc=7;x=100.500;y=200.250";
        QCOMPARE(cell.store.last.value3, sent);
        answer.insert({{"edgePoints", 32},
                       {"residual", 0.0284},
                       {"runnerUpScore", 0.4},
                       {"hubRadius", 808.19},
                       {"holeRadius", 15.526}});
        cell.finish(Cell::result("工位2", answer));
        const QString outline = "score=0.875;second=0.400;edge=32;residual=0.028;rim=808.2;hole=15.53";
        QCOMPARE(cell.store.last.value3, outline + ";" + sent);
        answer.insert({{"mouthPixels", 812}, {"mouthResidual", 3.24}, {"outerRadius", 18.2}});
        cell.finish(Cell::result("工位2", answer));
        QCOMPARE(cell.store.last.value3, outline + ";mouth=812;gray=3.2;outer=18.20;" + sent);
    }

    void missingValuesHaveTheirDefaults()
    {
        Cell cell;
        cell.finish(Cell::result("工位1", {}));
        QCOMPARE(told(cell.port.words(0), cell.store.last.errorType, cell.store.last.matchScore),
                 "0 0 365 0 10 0 20 0|16|0");
        cell.finish(Cell::result("工位1", {{"angle", 45.0}, {"error", "none"}}));
        QCOMPARE(cell.store.last.errorType, 16);
    }

    void valueOfAnotherTypeIsMissing_data()
    {
        Table::of<QString, QVariant>({{"angle as words", "angle", "forty-two"},
                                      {"angle as text", "angle", "42,5"},
                                      {"angle as nothing", "angle", ""},
                                      {"angle as digits", "angle", "42.5"},
                                      {"angle as bytes", "angle", QByteArray("42.5")},
                                      {"angle as yes", "angle", true},
                                      {"place as text", "centerPoint", "(0, 0)"}});
    }
    void valueOfAnotherTypeIsMissing()
    {
        const auto [key, value] = Table::row<QString, QVariant>();
        Cell cell;
        QVariantMap answer = Cell::found(45);
        answer[key] = value;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("\"" + key + "\" is a "));
        cell.finish(Cell::result("工位1", answer));
        QCOMPARE(told(cell.port.commands(), int(cell.port.sent.value(0).data[2])), "FH|365");
    }

    void uncalibratedOrMissingTaskIsAnsweredWith361()
    {
        Cell cell;
        QVariantMap uncalibrated = Cell::result("工位1", Cell::found(45));
        uncalibrated["taskCali"] = false;
        cell.finish(uncalibrated);
        QVariantMap noTask = Cell::result("工位2", {});
        noTask.remove("AlgoResult");
        cell.finish(noTask);
        QCOMPARE(told(cell.port.commands(), cell.port.words(2)), "FHGH|0 0 361 0 0 0 0 0");
        QCOMPARE(cell.panel, QStringList({"1|五辐 No Cali!!!", "2|五辐 No Task!!!"}));
        QCOMPARE(cell.store.protocol,
                 QStringList({"source 1 五辐 7 after 2 frames", "source 2 五辐 7 after 4 frames"}));
        QCOMPARE(cell.shown, (QList<QPair<int, int>>{{2, 7}}));
    }

    void resultOfAnotherSolutionIsRecordedAndItsTriggerAnsweredWith361()
    {
        Cell cell;
        cell.finish(Cell::result("别的", Cell::found(45)));
        QCOMPARE(cell.port.commands(), QByteArray("FH"));
        QCOMPARE(cell.store.protocol.size(), 4); // the result's images and row, the trigger's row
        QCOMPARE(cell.store.last.stationName, QStringLiteral("Station_1"));
        QCOMPARE(cell.store.last.errorType, int(CellError::NoResult));
        QVariantMap uncalibrated = Cell::result("别的", {});
        uncalibrated["taskCali"] = false;
        cell.finish(uncalibrated);
        QCOMPARE(cell.port.commands(), QByteArray("FHGHFH"));
    }

    void whatWasSentIsWhatEverybodyGets_data()
    {
        const QString none = "angle :361.000 no found Value", place = " center:(100.500,200.250)";
        const QString at = " 100 500 200 250", nowhere = " 0 0 0 0";
        Table::of<double, double, QString, QString, QString>(
            {{"a frame cannot carry X", 45.0, 1e9, "GH|0 0 361 0" + nowhere, none, "361|106|false"},
             {"cut, not rounded", 359.9996, 1.0, "G|0 0 359 999" + at, "angle :359.999" + place, "359.9996|0|true"},
             {"a turn is no place", 360.0, 1.0, "GH|0 0 360 0" + at, "angle :360.000" + place, "360|0|false"},
             {"negative", -10.0, 1.0, "G|0 0 350 0" + at, "angle :-10.000" + place, "-10|0|true"},
             {"a turn and more", 370.0, 1.0, "GH|0 0 370 0" + at, none, "370|0|false"},
             {"nothing found", 361.0, 1.0, "GH|0 0 361 0" + at, none, "361|0|false"},
             {"no number", qQNaN(), 1.0, "GH|0 0 365 0" + at, none, "365|0|false"}});
    }
    void whatWasSentIsWhatEverybodyGets()
    {
        const auto [angle, scale, sent, line, stored] = Table::row<double, double, QString, QString, QString>();
        Cell cell;
        cell.config.station(2).twoPoint.scale = scale;
        StationReading reading;
        QObject::connect(&cell.handler, &ResultHandler::readingChanged,
                         [&](int, const StationReading& told) { reading = told; });
        cell.finish(Cell::result("工位2", Cell::found(angle)));
        QCOMPARE(told(cell.port.commands(), cell.port.words(0)), sent);
        QCOMPARE(cell.panel, QStringList("2|五辐 " + line));
        const StationResult& row = cell.store.last;
        QCOMPARE(told(row.angle, row.errorType, reading.found), stored);
        QCOMPARE(told(reading.error, reading.plcIndex, reading.resultImage, reading.sourceImage),
                 told(row.errorType, row.part.plcIndex, row.value1, row.part.sourceImage));
        QVERIFY(reading.time.isValid() && reading.time == row.time); // by which the panel leads to the row
    }
};

QTEST_GUILESS_MAIN(ResultHandlerTest)
#include "tst_resulthandler.moc"
