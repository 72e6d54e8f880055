#include "../db/OtherProgram.h"
#include "db/PartTable.h"
#include "db/StationDB.h"
#include "results/charts/Charts.h"
#include "results/data/PartReader.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <random>

namespace {

qint64 wall(const char* text)
{
    return PartTable::wallOf(QDateTime::fromString(QLatin1String(text), "yyyy-MM-dd hh:mm:ss"));
}

QVector<double> numbers(const QString& text)
{
    QVector<double> values;
    for (const QString& number : text.split(' '))
        values << number.toDouble();
    return values;
}

/// Parts at random moments of ten days, three in four found.
PartSeries randomSeries(int parts)
{
    std::mt19937 random(7);
    PartSeries series;
    series.models = QStringList{"W18", "W19", "W20"};
    QVector<qint64> walls;
    for (int i = 0; i < parts; ++i)
        walls << wall("2026-03-25 00:00:00") + qint64(random() % 864000) * 1000;
    std::sort(walls.begin(), walls.end());
    for (const qint64 at : walls) {
        const int dice = int(random() % 8);
        series.wall << at;
        series.uid << series.uid.size() + 1;
        series.station << qint8(1 + random() % 2);
        series.outcome << qint8(dice < 6 ? 0 : dice - 5);
        series.error << qint16(dice < 6 ? 0 : 100 + dice);
        series.model << int(random() % 3);
        series.angle << (dice < 6 ? random() % 3600 / 10.0 : dice == 6 ? 361.0 : 999.0);
        series.x << (dice < 6 ? 100 + random() % 1000 / 100.0 : qQNaN());
        series.y << series.x.last() - 50 + int(random() % 100) / 10.0;
        series.score << 80 + random() % 20;
        series.replyMs << 20 + random() % 20;
    }
    return series;
}

/// What a chart shows, as the SQL of the test prints it.
QStringList numbersOf(const Charts::Answer& answer)
{
    QStringList texts;
    const auto add = [&texts](const char* form, auto... numbers) { texts << QString::asprintf(form, numbers...); };
    const auto three = [](const Statistics::Tally& t) {
        return QStringLiteral("%1 %2 %3").arg(t.found).arg(t.notFound).arg(t.refused);
    };
    for (const Statistics::Bucket& bucket : answer.buckets) {
        if (bucket.tally.parts() > 0)
            texts << QStringLiteral("%1 %2").arg(bucket.begin).arg(three(bucket.tally)) +
                         QString::asprintf(" %.4f %.4f", bucket.replyMs.mean, bucket.cycle.mean);
    }
    for (auto it = answer.models.begin(); it != answer.models.end(); ++it)
        texts << it.key() + ' ' + three(it.value());
    const ControlChart& control = answer.control;
    const Statistics::Summary& own = answer.histogram.summary;
    const Statistics::Capability& fit = answer.capability;
    if (answer.question.kind == Charts::Control)
        add("%.4f %.4f %.4f %d %d", control.mean, control.meanRange, control.sigma,
            int(std::count_if(control.broken.begin(), control.broken.end(),
                              [](ControlChart::Rules rules) { return rules.testFlag(ControlChart::BeyondLimits); })),
            int(std::count_if(control.ranges.begin(), control.ranges.end(),
                              [&](double range) { return range > control.upperRange(); })));
    else if (answer.question.kind == Charts::Distribution)
        add("%d %.4f %.4f %.4f %.4f %d", own.count, own.mean, own.sigma * own.sigma, fit.cp * fit.cp, fit.cpk * fit.cpk,
            fit.outside);
    else
        for (int i = 0; i < answer.values.size(); ++i) {
            const double turned =
                std::fmod(std::round(answer.values[i] * 10) + 7200, 3600) / 10; // whole turns are moved
            const bool angle = answer.question.kind == Charts::Trend && answer.question.value == Statistics::Angle;
            const QString others = answer.others.isEmpty() ? QString() : QString::asprintf(" %.4f", answer.others[i]);
            texts << QString::asprintf("%lld %lld %.4f", answer.walls[i], answer.uids[i],
                                       angle ? turned : answer.values[i]) +
                         others;
        }
    for (const int count : answer.histogram.counts)
        add("%d", count);
    for (const QMap<int, int>& counts : {answer.byError, answer.byAngle}) {
        for (auto it = counts.begin(); it != counts.end(); ++it)
            add("%d %d", it.key(), it.value());
    }
    return texts;
}

} // namespace

class StatisticsTest : public QObject
{
    Q_OBJECT

private slots:
    void shiftOfAMoment_data()
    {
        const char* const three = "22:00，6:00; 14:00";
        Table::of<QString, QString, QString>(
            {{"morning", three, "2026-03-25 06:00:00", "25 1 06:00-14:00"},
             {"the last moment of the first", three, "2026-03-25 13:59:59", "25 1 06:00-14:00"},
             {"before midnight", three, "2026-03-25 23:00:00", "25 3 22:00-06:00"},
             {"after midnight, of the day before", three, "2026-03-26 05:59:59", "25 3 22:00-06:00"},
             {"none given", "", "2026-03-25 13:00:00", "25 1 00:00-00:00"},
             {"no time", "6:00, 25:00", "2026-03-25 13:00:00", "“25:00”不对"},
             {"twice the same", "6:00 06:00", "2026-03-25 13:00:00", "“06:00”重复"}});
    }
    void shiftOfAMoment()
    {
        const auto [text, moment, expected] = Table::row<QString, QString, QString>();
        QString error;
        const Shifts shifts = Shifts::fromText(text, &error);
        const Shifts::Shift shift = shifts.at(wall(qPrintable(moment)));
        if (!error.isEmpty()) {
            QVERIFY2(error.contains(expected), qPrintable(error));
            return;
        }
        const auto time = [](qint64 at) { return PartTable::timeOf(at).toString("hh:mm"); };
        QCOMPARE(QStringLiteral("%1 %2 %3-%4")
                     .arg(shift.day.day())
                     .arg(shift.number)
                     .arg(time(shift.begin), time(shift.end)),
                 expected);
        QCOMPARE(shifts.previous(shifts.next(shift)).begin, shift.begin);
        QCOMPARE(Shifts::fromText(shifts.toText()).at(shift.begin).end, shift.end);
    }

    /// Every chart's numbers, of the columns that it reads, are those that SQLite computes of the same rows.
    void chartsAgreeWithADatabase_data()
    {
        const QString tally = "printf('%d %d %d', total(outcome = 0), total(outcome = 1), total(outcome = 2))";
        const auto buckets = [&tally](const char* begin) {
            return QStringLiteral("SELECT begin || ' ' || %2 || printf(' %.4f %.4f', avg(reply_ms), "
                                  "coalesce(avg(cycle), 0)) FROM (SELECT *, (wall - lag(wall) OVER (PARTITION BY "
                                  "begin, station ORDER BY wall, uid)) / 1000.0 AS cycle FROM (SELECT *, %1 AS begin "
                                  "FROM PartTable)) GROUP BY begin ORDER BY begin")
                .arg(QLatin1String(begin), tally);
        };
        const QString values = "SELECT printf('%d %d %.4f', wall, uid, %1) FROM PartTable WHERE outcome = 0 ORDER BY "
                               "wall, uid";
        const QString failures = "SELECT printf('%d %d', %1, count(*)) FROM PartTable WHERE outcome > 0 GROUP BY %1 "
                                 "ORDER BY %1";
        const QString spread =
            "WITH v AS (SELECT x AS v FROM PartTable WHERE outcome = 0), s AS (SELECT count(*) AS n, "
            "avg(v) AS m, (sum(v * v) - count(*) * avg(v) * avg(v)) / (count(*) - 1) AS q FROM v) ";
        const QString ranges = "WITH r AS (SELECT x, abs(x - lag(x) OVER (ORDER BY wall, uid)) AS r FROM PartTable "
                               "WHERE outcome = 0), s AS (SELECT avg(x) AS m, avg(r) AS a FROM r) ";
        using Span = Statistics::Span;
        using C = Charts;
        Table::of<int, int, int, QString>(
            {{"hours", C::Yield, 0, int(Span::Hour), buckets("wall / 3600000 * 3600000")},
             {"days", C::Yield, 0, int(Span::Day), buckets("wall / 86400000 * 86400000")},
             {"cycles by shift", C::Cycle, 0, int(Span::Shift),
              buckets("(wall - 21600000) / 43200000 * 43200000 + 21600000")},
             {"models", C::ByModel, 0, 0,
              "SELECT model || ' ' || " + tally + " FROM PartTable GROUP BY model ORDER BY model"},
             {"angles", C::Trend, Statistics::Angle, 0, values.arg("angle")},
             {"scores", C::Trend, Statistics::Score, 0, values.arg("score")},
             {"replies", C::Trend, Statistics::ReplyMs, 0, values.arg("reply_ms")},
             {"scatter", C::Scatter, 0, 0,
              "SELECT printf('%d %d %.4f %.4f', wall, uid, x, y) FROM PartTable WHERE outcome = 0 ORDER BY wall, uid"},
             {"distribution", C::Distribution, Statistics::X, 0,
              spread + "SELECT printf('%d %.4f %.4f %.4f %.4f %d', n, m, q, 36 / (36 * q), min(108 - m, m - 102) * "
                       "min(108 - m, m - 102) / (9 * q), (SELECT total(v < 102 OR v > 108) FROM v)) FROM s UNION ALL "
                       "SELECT * FROM (SELECT count(*) FROM v, (SELECT min(v) AS low, max(v) AS high FROM v) GROUP BY "
                       "min(:bins - 1, CAST((v - low) / ((high - low) / :bins) AS INT)) ORDER BY min(v))"},
             {"control", C::Control, Statistics::X, 0,
              ranges + "SELECT printf('%.4f %.4f %.4f %d %d', m, a, a / 1.128, (SELECT total(abs(x - m) > 3 * a / "
                       "1.128) FROM r), (SELECT total(r > 3.267 * a) FROM r)) FROM s"},
             {"causes", C::Failures, 0, 0,
              "SELECT * FROM (" + failures.arg("error") + ") UNION ALL SELECT * FROM (" +
                  failures.arg("CAST(angle AS INT)") + ")"}});
    }
    void chartsAgreeWithADatabase()
    {
        const auto [kind, value, span, sql] = Table::row<int, int, int, QString>();
        const TempHome home;
        const PartSeries series = randomSeries(1000);
        StationDB(PartReader::databaseOf(home.path())).initialise();
        OtherProgram other(PartReader::databaseOf(home.path()));
        QVERIFY(other.run("BEGIN"));
        for (int i = 0; i < series.size(); ++i)
            QVERIFY(other.run(QStringLiteral("INSERT INTO PartTable(wall, uid, station, outcome, error, model, angle, "
                                             "x, y, score, reply_ms) VALUES(%1,%2,%3,%4,%5,'%6',%7,%8,%9,%10,%11)")
                                  .arg(series.wall[i])
                                  .arg(series.uid[i])
                                  .arg(int(series.station[i]))
                                  .arg(int(series.outcome[i]))
                                  .arg(int(series.error[i]))
                                  .arg(series.models[series.model[i]])
                                  .arg(series.angle[i])
                                  .arg(qIsNaN(series.x[i]) ? "NULL" : QString::number(series.x[i]))
                                  .arg(qIsNaN(series.y[i]) ? "NULL" : QString::number(series.y[i]))
                                  .arg(series.score[i])
                                  .arg(series.replyMs[i])));
        QVERIFY(other.run("COMMIT"));
        const Charts::Question question{Charts::Kind(kind), Statistics::Value(value), Statistics::Span(span),
                                        Statistics::Tolerance{102, 108}, Shifts::fromText("6:00 18:00")};
        PartReader reader(home.path());
        QVERIFY2(reader.open(), qPrintable(reader.error()));
        const Charts::Answer answer = Charts::answer(reader.series({}, Charts::columnsFor(question)), question);
        const QString bins = QString::number(qMax(1, answer.histogram.counts.size()));
        QCOMPARE(numbersOf(answer), other.column(QString(sql).replace(":bins", bins)));
    }

    void emptyTimeBetweenPartsIsShownAsSuch()
    {
        PartSeries series = randomSeries(2);
        series.wall = {wall("2026-03-25 10:59:59"), wall("2026-03-25 13:00:00")};
        const auto buckets = Statistics::buckets(series, Statistics::Span::Hour, {});
        QCOMPARE(buckets.size(), 4);
        QVERIFY(qIsNaN(buckets[1].tally.yield()));
        series.wall[1] = wall("2126-03-25 13:00:00"); // a clock that was a century wrong
        QVERIFY(Statistics::buckets(series, Statistics::Span::Hour, {}, 100).size() <= 100);
    }

    void summariesOfNumbers()
    {
        // The sample of NIST's "NumAcc3": mean 1000000.2, sigma 0.1 exactly.
        QVector<double> accurate{1000000.2};
        for (int i = 0; i < 500; ++i)
            accurate << 1000000.1 << 1000000.3;
        accurate << qQNaN();
        const Statistics::Summary summary = Statistics::summary(accurate);
        QCOMPARE(summary.count, 1001);
        QVERIFY(qAbs(summary.mean - 1000000.2) < 1e-9 && qAbs(summary.sigma - 0.1) < 1e-9);
        const QVector<double> turned = Statistics::unwrapped({359.5, 0.5, 1.5, 358.5, qQNaN()});
        QVERIFY(qAbs(Statistics::summary(turned).sigma - 1.2909944) < 1e-6);
        QVERIFY(std::abs(std::remainder(Statistics::summary(turned).mean, 360.0)) < 1e-9);
    }

    void histogramAndCapabilityOfANormalSample()
    {
        std::mt19937 random(3);
        std::normal_distribution<double> normal(10, 0.5);
        QVector<double> values;
        for (int i = 0; i < 20000; ++i)
            values << normal(random);
        const Statistics::Histogram histogram = Statistics::histogram(values + QVector<double>{qQNaN()});
        QCOMPARE(std::accumulate(histogram.counts.begin(), histogram.counts.end(), 0), 20000);
        double worst = 0; // chi by bin, against the curve drawn over it
        for (int bin = 0; bin < histogram.counts.size(); ++bin) {
            const double expected = histogram.normal(histogram.first + (bin + 0.5) * histogram.width);
            if (expected > 50)
                worst = qMax(worst, qAbs(histogram.counts[bin] - expected) / std::sqrt(expected));
        }
        QVERIFY2(worst < 5, qPrintable(QString::number(worst)));
        const auto [cp, cpk, outside] = Statistics::capability(values, {8.5, 12});
        QVERIFY(qAbs(cp - 3.5 / 3) < 0.02 && qAbs(cpk - 1.0) < 0.02);
        QVERIFY(outside > 0 && outside < 100);
        QVERIFY(qIsNaN(Statistics::capability(values, {}).cpk) && qIsNaN(Statistics::capability({1, 1}, {0, 2}).cp));
        QCOMPARE(Statistics::capability(values, {8.5, qQNaN()}).cpk > 0.9, true);
        QCOMPARE(Statistics::histogram({5, 5, 5}).counts, QVector<int>{3});
        QCOMPARE(Statistics::histogram({}).counts, QVector<int>());
    }

    void controlChartsMarkTheRulesThatArePoints_data()
    {
        // Sixty values that alternate by one make sigma 1/1.128; then comes the pattern.
        Table::of<QString, int>({{"nothing", "0 1 0 1", 0},
                                 {"beyond the limits", "0 1 0 4", ControlChart::BeyondLimits},
                                 {"nine above", "0 .6 .7 .6 .7 .6 .7 .6 .7 .6", ControlChart::OneSide},
                                 {"six rising", "0 .1 .2 .3 .4 .5", ControlChart::Trend},
                                 {"two of three", "0 2.6 1 2.6", ControlChart::TwoOfThree},
                                 {"four of five", "0 1.6 1.6 .4 1.6 1.6", ControlChart::FourOfFive}});
    }
    void controlChartsMarkTheRulesThatArePoints()
    {
        const auto [pattern, rules] = Table::row<QString, int>();
        QVector<double> values;
        for (int i = 0; i < 2000; ++i)
            values << i % 2;
        const ControlChart chart = ControlChart::of(values + numbers(pattern));
        QVERIFY(qAbs(chart.sigma - 1 / 1.128) < 0.01 && qAbs(chart.upperRange() - 3.267) < 0.05);
        QCOMPARE(int(chart.broken.last()), rules);
        QCOMPARE(std::count(chart.broken.begin(), chart.broken.begin() + 2000, 0), 2000);
    }
};

QTEST_GUILESS_MAIN(StatisticsTest)
#include "tst_statistics.moc"
