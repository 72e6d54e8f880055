#include "CellTruth.h"
#include "PartReport.h"
#include "ReportText.h"
#include "SimOptions.h"
#include "TriggerExchange.h"
#include "config/ksGlobalConfig.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <QJsonArray>

Q_DECLARE_METATYPE(Verdict)

namespace {

constexpr double noAngle = 361;

PartRow rowOf(int number, double angle, std::optional<bool> hole = true, double truth = 90)
{
    PartRow row;
    row.number = number;
    row.station = (number - 1) % 2 + 1;
    row.image.hole = hole;
    row.image.angle = truth;
    row.answered = true;
    row.noticed = angle >= 360;
    row.answer.angle = angle;
    row.latencyMs = number;
    return row;
}

RoadTiming timing(int station, double engineMs, qint64 rssKib)
{
    return {station, engineMs, 0, 0, rssKib};
}

} // namespace

class PlcReportTest : public QObject
{
    Q_OBJECT

private slots:
    void partIsJudged_data()
    {
        // -1: truth unknown
        Table::of<double, double, int, double, Verdict>({{"found", 90.4, 90.0, 1, 0.4, Verdict::Right},
                                                         {"just outside", 90.501, 90.0, 1, 0.501, Verdict::Wrong},
                                                         {"across 0, upwards", 0.2, 359.9, 1, 0.3, Verdict::Right},
                                                         {"across 0, downwards", 359.8, 0.1, 1, 0.3, Verdict::Right},
                                                         {"opposite", 270.0, 90.0, 1, 180.0, Verdict::Wrong},
                                                         {"missed", noAngle, 90.0, 1, -1.0, Verdict::Missed},
                                                         {"no hole", noAngle, 0.0, 0, -1.0, Verdict::Right},
                                                         {"invented", 0.0, 0.0, 0, -1.0, Verdict::Invented},
                                                         {"refused", 999.0, 90.0, 1, -1.0, Verdict::Missed},
                                                         {"truth unknown", 12.0, 0.0, -1, -1.0, Verdict::Answered}});
    }
    void partIsJudged()
    {
        const auto [angle, truth, hole, error, verdict] = Table::row<double, double, int, double, Verdict>();
        PartRow row = rowOf(1, angle, hole < 0 ? std::nullopt : std::optional<bool>(hole > 0), truth);
        QCOMPARE(row.verdict(), verdict);
        QVERIFY(qAbs(row.angleErrorDeg().value_or(-1) - error) < 1e-9);
        row.noticed = false;
        if (angle >= 360)
            QCOMPARE(row.verdict(), Verdict::NoNotice);
        row.answered = false;
        QCOMPARE(row.verdict(), Verdict::NoAnswer);
        QVERIFY(!row.angleErrorDeg() && !row.found());
    }

    void timingsGoToTheirParts()
    {
        PartReport report(10);
        for (int i = 1; i <= 24; ++i)
            report.add(rowOf(i, i == 3 ? 999 : i == 4 ? noAngle : 90, i != 4));
        PartRow lost = rowOf(25, 0);
        lost.answered = false;
        report.add(lost);
        QCOMPARE(report.partsWithImage(), 23);
        QVector<RoadTiming> timings;
        for (int i = 24; i >= 1; --i) // station 2 may tell before station 1
            if (i != 3)
                timings.prepend(timing((i - 1) % 2 + 1, i / 100.0, 1000 + i));
        std::stable_sort(timings.begin(), timings.end(), [](auto& a, auto& b) { return a.station > b.station; });
        report.join(timings);
        for (const PartRow& row : report.rows()) {
            QCOMPARE(row.road.has_value(), row.number != 3 && row.number != 25);
            if (row.road)
                QCOMPARE(*report.restMs(row), row.number - row.number / 100.0 - 10);
        }
        const ReportFigures figures = report.figures();
        const Spread latency = *figures.latencyMs; // nearest ranks of 1 to 24
        QCOMPARE(QVector<double>({latency.p50, latency.p95, latency.p99, latency.max}),
                 QVector<double>({12, 23, 24, 24}));
        QVERIFY(!spreadOf({}));
        QCOMPARE(*figures.rssKibAfter20, 1020);
        QCOMPARE(*figures.rssKibAtEnd, 1024);
        QCOMPARE(figures.engineMs->max, 0.24);
        QCOMPARE(figures.parts, 25);
        QCOMPARE(figures.replies, 24);
        QCOMPARE(figures.found, 22);
        QVERIFY(!figures.allGood);
        const QJsonObject row = ReportText::json(report)["rows"].toArray()[24].toObject();
        for (const char* key : {"angle", "engine_ms", "latency_ms", "x"}) // of the one that got no answer
            QVERIFY2(row.contains(QLatin1String(key)) && row[QLatin1String(key)].isNull(), key);
    }

    void oneBadPartSpoilsTheRun()
    {
        PartReport report(0);
        report.add(rowOf(1, 90.1));
        report.add(rowOf(2, noAngle, false));
        for (const int refused : {1, 2}) {
            report.setRefusals({2, refused, {0.5, 0.7}});
            QCOMPARE(report.figures().allGood, refused == 2);
        }
        report.add(rowOf(3, 91));
        report.add(rowOf(4, 5, false));
        const QString summary = ReportText::summary(report.figures()).join('\n');
        for (const char* part : {"parts 4, replies 4, found 3, wrong 2", "2 of 2", "p99 0.700", "NOT all good"})
            QVERIFY2(summary.contains(QLatin1String(part)), qPrintable(summary));
    }

    void timingLineIsFoundInTheProgramsOutput_data()
    {
        // below 0: no timing line
        const QString good =
            "valvecell.road: station=2 engine_ms=4.213 capture_ms=15.402 total_ms=21.210 rss_kib=123456";
        Table::of<QString, double>({{"with time before and line end", "12:00:01 info " + good + "\r\n", 4.213},
                                    {"cut off", good.left(80), -1.0},
                                    {"no number", QString(good).replace("4.213", "fast"), -1.0}});
    }
    void timingLineIsFoundInTheProgramsOutput()
    {
        const auto [line, engineMs] = Table::row<QString, double>();
        const auto timing = RoadLog::parse(line);
        QCOMPARE(timing.has_value(), engineMs > 0);
        if (!timing)
            return;
        QCOMPARE(timing->station, 2);
        QCOMPARE(timing->engineMs, engineMs);
        QCOMPARE(timing->totalMs, 21.21);
        QCOMPARE(timing->rssKib, 123456);
    }

    void machinePointLeadsBackToItsPixel_data()
    {
        Table::of<bool, bool, QPointF>({{"two points", false, false, QPointF(60.25, 120.125)},
                                        {"two points, swapped", false, true, QPointF(120.125, 60.25)},
                                        // q = (2 * 100.5 - 200.25 + 5, 100.5 + 3 * 200.25 + 7), offsets 1 and 2
                                        {"four points", true, false, QPointF(6.75, 710.25)},
                                        {"four points, swapped", true, true, QPointF(710.25, 6.75)}});
    }
    void machinePointLeadsBackToItsPixel()
    {
        const auto [fourPoint, swapped, machine] = Table::row<bool, bool, QPointF>();
        const TempHome home;
        ksGlobalConfig config;
        config.use4pointstand = fourPoint;
        StationConfig& station = config.station(1);
        station.swapXY = station.fourPoint.swapXY = swapped;
        station.twoPoint = {{}, {}, 0, 0.5, 10, 20};
        station.fourPoint.map = {2, -1, 5, 1, 3, 7};
        station.fourPoint.xOffset = 1;
        station.fourPoint.yOffset = 2;
        config.station(2).twoPoint.scale = 0;
        QVERIFY(config.save());
        QString error;
        QVERIFY2(CellCalibration::load(home.path(), &error), qPrintable(error));
        const auto pixel = CellCalibration::pixelOf(1, machine);
        QVERIFY(pixel && QLineF(*pixel, QPointF(100.5, 200.25)).length() < 1e-9);
        QVERIFY(!CellCalibration::pixelOf(2, machine)); // no scale, and an empty map
        QVERIFY(!CellCalibration::load(home.path("/nowhere"), &error));
    }

    void spoiledTruthIsNamed_data()
    {
        Table::of<QByteArray, QString>(
            {{"no JSON", "{\n\"images\": [", "line 2"},
             {"hole without angle", R"({"images": [{"file": "a", "index": 1, "hole": true}]})", "entry 1"},
             {"huge index", R"({"images": [{"file": "a", "index": 99999, "hole": false}]})", "entry 1"}});
    }
    void spoiledTruthIsNamed()
    {
        const auto [truth, message] = Table::row<QByteArray, QString>();
        const TempHome home;
        home.write("/images/a.bmp", "x");
        home.write("/images/truth.json", truth);
        QString error;
        ImageCycle cycle;
        QVERIFY(!cycle.load(home.path("/images"), &error));
        QVERIFY2(error.contains("truth.json") && error.contains(message), qPrintable(error));
    }

    void paceKeepsFilterTimeOfAStationAndIntervalOfAll()
    {
        const qint64 ms = 1'000'000;
        TriggerPace pace(1000, 300);
        QCOMPARE(pace.waitNs(1, 0), 0);
        pace.triggered(1, 0);
        QCOMPARE(pace.waitNs(2, 100 * ms), 200 * ms);
        QVERIFY(pace.waitNs(1, 1049 * ms) > 0); // the program's timer may run that long
        pace.triggered(2, 1300 * ms);
        QCOMPARE(pace.waitNs(1, 1300 * ms), 300 * ms);
        QCOMPARE(pace.waitNs(1, 1600 * ms), 0);
        QCOMPARE(TriggerPace(0, 0).waitNs(1, 0), 0);
    }

    void wrongOptionsAreRefused_data()
    {
        Table::of<QStringList, QString>(
            {{"no line", QStringList{}, "--link"},
             {"two lines", QStringList{"--link", "a", "--port", "b"}, "--port"},
             {"line and server", QStringList{"--link", "a", "--listen", "b"}, "--listen"},
             {"cuts below zero", QStringList{"--link", "a", "--cuts", "-1"}, "--cuts -1"},
             {"unknown", QStringList{"--link", "a", "--colour"}, "colour"},
             {"text for a number", QStringList{"--link", "a", "--parts", "many"}, "--parts many"},
             {"below zero", QStringList{"--link", "a", "--filter", "-1"}, "--filter -1"},
             {"two modes", QStringList{"--link", "a", "--parts", "1", "--script", "s"}, "--script"}});
    }
    void wrongOptionsAreRefused()
    {
        const auto [arguments, message] = Table::row<QStringList, QString>();
        QString error;
        QVERIFY(!SimOptions().parse(arguments, &error));
        QVERIFY2(error.contains(message), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(PlcReportTest)
#include "tst_plcreport.moc"
