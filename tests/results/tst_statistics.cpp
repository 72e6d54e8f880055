#include "../db/OtherProgram.h"
#include "db/PartTable.h"
#include "results/data/ControlChart.h"
#include "results/data/Statistics.h"
#include "support/Table.h"

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
        series.y << series.x.last();
        series.score << 90;
        series.replyMs << 20 + random() % 20;
    }
    return series;
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

    /// SQLite counts and adds the same rows.
    void bucketsAndTalliesAgreeWithADatabase()
    {
        const PartSeries series = randomSeries(3000);
        const QTemporaryDir folder;
        OtherProgram other(folder.filePath("parts.db"));
        QVERIFY(other.run("CREATE TABLE p(wall, outcome, model, reply, error, angle)") && other.run("BEGIN"));
        for (int i = 0; i < series.size(); ++i)
            other.run(QStringLiteral("INSERT INTO p VALUES(%1,%2,'%3',%4,%5,%6)")
                          .arg(series.wall[i])
                          .arg(int(series.outcome[i]))
                          .arg(series.models[series.model[i]])
                          .arg(series.replyMs[i])
                          .arg(int(series.error[i]))
                          .arg(series.angle[i]));
        const QString tally = "total(outcome = 0) || ' ' || total(outcome = 1) || ' ' || total(outcome = 2)";
        const auto textOf = [](const Statistics::Tally& t) {
            return QStringLiteral("%1.0 %2.0 %3.0").arg(t.found).arg(t.notFound).arg(t.refused);
        };
        const auto begins = [&](Statistics::Span span, const Shifts& shifts) {
            QStringList texts;
            for (const Statistics::Bucket& bucket : Statistics::buckets(series, span, shifts)) {
                if (bucket.tally.parts() > 0)
                    texts << QStringLiteral("%1 %2 %3")
                                 .arg(bucket.begin)
                                 .arg(textOf(bucket.tally))
                                 .arg(bucket.replyMs.mean, 0, 'f', 6);
            }
            return texts;
        };
        const auto grouped = [&](const QString& begin) {
            return other.column(
                QStringLiteral(
                    "SELECT (%1) || ' ' || %2 || ' ' || printf('%.6f', avg(reply)) FROM p GROUP BY %1 ORDER BY %1")
                    .arg(begin, tally));
        };
        QCOMPARE(begins(Statistics::Span::Hour, {}), grouped("wall / 3600000 * 3600000"));
        QCOMPARE(begins(Statistics::Span::Day, {}), grouped("wall / 86400000 * 86400000"));
        QCOMPARE(begins(Statistics::Span::Shift, Shifts::fromText("6:00 18:00")),
                 grouped("(wall - 21600000) / 43200000 * 43200000 + 21600000"));
        QStringList models;
        const QMap<QString, Statistics::Tally> byModel = Statistics::byModel(series);
        for (auto it = byModel.begin(); it != byModel.end(); ++it)
            models << it.key() + ' ' + textOf(it.value());
        QCOMPARE(models, other.column("SELECT model || ' ' || " + tally + " FROM p GROUP BY model ORDER BY model"));
        const auto pairs = [](const QMap<int, int>& counts) {
            QStringList texts;
            for (auto it = counts.begin(); it != counts.end(); ++it)
                texts << QStringLiteral("%1 %2").arg(it.key()).arg(it.value());
            return texts;
        };
        const QString failures = "SELECT (%1) || ' ' || count(*) FROM p WHERE outcome > 0 GROUP BY %1 ORDER BY %1";
        QCOMPARE(pairs(Statistics::failuresByError(series)), other.column(failures.arg("error")));
        QCOMPARE(pairs(Statistics::failuresByAngle(series)), other.column(failures.arg("cast(angle as int)")));
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
