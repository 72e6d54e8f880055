#include "results/charts/Charts.h"

#include "common/LookColors.h"
#include "db/PartTable.h"
#include "results/charts/ResultPlot.h"
#include "results/parts/PartTexts.h"

#include <cmath>

namespace {

constexpr double barShare = 0.8;
constexpr int mostApart = 200;

QString number(double value)
{
    return std::isfinite(value) ? QString::number(value, 'g', 6) : QStringLiteral("–");
}

QString hundredths(double value)
{
    return std::isfinite(value) ? QString::number(value, 'f', 2) : QStringLiteral("–");
}

QString timeText(double wall)
{
    return PartTable::timeOf(qint64(wall)).toString(QStringLiteral("MM-dd hh:mm:ss"));
}

/// Time against value.
QVector<QPointF> pointsOf(const Charts::Answer& answer)
{
    QVector<QPointF> points;
    for (int i = 0; i < answer.values.size(); ++i)
        points.append({double(answer.walls.at(i)), answer.values.at(i)});
    return points;
}

QVector<QColor> outcomeColors()
{
    const LookColors& colors = lookColors();
    return {colors.good.ink, colors.bad.ink, colors.caution.ink};
}

QStringList outcomeNames()
{
    return {PartTexts::outcome(PartOutcome::Found), PartTexts::outcome(PartOutcome::NotFound),
            PartTexts::outcome(PartOutcome::Refused)};
}

QVector<double> layersOf(const Statistics::Tally& tally)
{
    return {double(tally.found), double(tally.notFound), double(tally.refused)};
}

std::function<QString(const QPointF&)> timeAndValue()
{
    return [](const QPointF& place) { return timeText(place.x()) + QStringLiteral("  ") + number(place.y()); };
}

const Statistics::Bucket* bucketAt(const QVector<Statistics::Bucket>& buckets, double wall)
{
    for (const Statistics::Bucket& bucket : buckets) {
        if (wall >= bucket.begin && wall < bucket.end)
            return &bucket;
    }
    return nullptr;
}

} // namespace

QString Charts::nameOf(Kind kind)
{
    const QString names[] = {tr("产量和找到率"),   tr("节拍和应答时间"),      tr("按型号"),  tr("趋势"), tr("X-Y 散布"),
                             tr("分布和过程能力"), tr("单值-移动极差控制图"), tr("失败原因")};
    return names[kind];
}

void Charts::show(const Answer& answer, const QVector<LogRow>& marks, ResultPlot* plot, ResultPlot* lower)
{
    using Show = void (*)(const Answer&, ResultPlot*);
    const Show shows[] = {showYield,   showCycle,        showModels,  showTrend,
                          showScatter, showDistribution, showControl, showFailures};
    const Kind kind = answer.question.kind;
    shows[kind](answer, plot);
    if (kind == Yield || kind == Cycle || kind == Trend)
        showMarks(marks, plot);
    plot->finish();
    lower->reset({}, {}, {});
    if (hasLower(kind))
        showRanges(answer, lower);
    lower->finish();
}

void Charts::showYield(const Answer& answer, ResultPlot* plot)
{
    plot->reset(nameOf(Yield), {}, tr("工件数"));
    plot->setTimeAxis();
    QVector<QPointF> places;
    QVector<QVector<double>> layers;
    QVector<QPointF> yields;
    for (const Statistics::Bucket& bucket : answer.buckets) {
        const double middle = (bucket.begin + bucket.end) / 2.0;
        places.append({middle, 0});
        layers.append(layersOf(bucket.tally));
        if (!qIsNaN(bucket.tally.yield()))
            yields.append({middle, bucket.tally.yield()});
    }
    const double width = answer.buckets.isEmpty() ? 1 : answer.buckets.first().end - answer.buckets.first().begin;
    const bool many = places.size() > mostApart; // with gaps of part of a pixel they would flicker
    plot->addStack(outcomeNames(), places, layers, outcomeColors(), (many ? 1 : barShare) * width);
    plot->addLine(tr("找到率 %"), yields, lookColors().accent, QwtPlot::yRight);
    plot->setRightAxis(tr("找到率 %"), 0, 100);
    plot->setTelling([buckets = answer.buckets](const QPointF& place) {
        const Statistics::Bucket* bucket = bucketAt(buckets, place.x());
        return bucket ? tr("%1：%2 个工件，找到 %3，未找到 %4，拒绝 %5，找到率 %6 %")
                            .arg(timeText(double(bucket->begin)))
                            .arg(bucket->tally.parts())
                            .arg(bucket->tally.found)
                            .arg(bucket->tally.notFound)
                            .arg(bucket->tally.refused)
                            .arg(number(bucket->tally.yield()))
                      : QString();
    });
}

void Charts::showCycle(const Answer& answer, ResultPlot* plot)
{
    plot->reset(nameOf(Cycle), {}, tr("节拍 s"));
    plot->setTimeAxis();
    QVector<QPointF> cycles;
    QVector<QPointF> replies;
    for (const Statistics::Bucket& bucket : answer.buckets) {
        const double middle = (bucket.begin + bucket.end) / 2.0;
        if (bucket.cycle.count > 0)
            cycles.append({middle, bucket.cycle.mean});
        if (bucket.replyMs.count > 0)
            replies.append({middle, bucket.replyMs.mean});
    }
    plot->addLine(tr("节拍 s"), cycles, lookColors().accent);
    plot->addLine(PartTexts::value(Statistics::ReplyMs), replies, lookColors().caution.ink, QwtPlot::yRight);
    plot->setRightAxis(PartTexts::value(Statistics::ReplyMs), 0, 0);
    plot->setTelling(timeAndValue());
}

void Charts::showModels(const Answer& answer, ResultPlot* plot)
{
    plot->reset(nameOf(ByModel), {}, tr("工件数"));
    QVector<QPointF> places;
    QVector<QVector<double>> layers;
    const QStringList names = answer.models.keys();
    for (const Statistics::Tally& tally : answer.models) {
        places.append({double(places.size()), 0});
        layers.append(layersOf(tally));
    }
    plot->setNameAxis(names);
    plot->addStack(outcomeNames(), places, layers, outcomeColors(), barShare);
    plot->setTelling([models = answer.models, names](const QPointF& place) {
        const QString name = names.value(qRound(place.x()));
        const Statistics::Tally tally = models.value(name);
        return name.isEmpty()
                   ? QString()
                   : tr("%1：%2 个工件，找到率 %3 %").arg(name).arg(tally.parts()).arg(number(tally.yield()));
    });
}

void Charts::showTrend(const Answer& answer, ResultPlot* plot)
{
    const Statistics::Value value = answer.question.value;
    plot->reset(nameOf(Trend), {}, PartTexts::value(value));
    plot->setTimeAxis();
    plot->addDots(PartTexts::value(value), pointsOf(answer), lookColors().accent, answer.uids);
    plot->addLevel(tr("上限"), answer.question.tolerance.upper, lookColors().bad.ink);
    plot->addLevel(tr("下限"), answer.question.tolerance.lower, lookColors().bad.ink);
    plot->setTelling(timeAndValue());
}

void Charts::showScatter(const Answer& answer, ResultPlot* plot)
{
    plot->reset(nameOf(Scatter), PartTexts::value(Statistics::X), PartTexts::value(Statistics::Y));
    QVector<QPointF> points;
    for (int i = 0; i < answer.values.size(); ++i)
        points.append({answer.values.at(i), answer.others.at(i)});
    plot->addDots(tr("找到的工件"), points, lookColors().accent, answer.uids);
    plot->setTelling(
        [](const QPointF& place) { return QStringLiteral("X %1  Y %2").arg(number(place.x()), number(place.y())); });
}

void Charts::showDistribution(const Answer& answer, ResultPlot* plot)
{
    const Statistics::Histogram& histogram = answer.histogram;
    const Statistics::Summary& summary = histogram.summary;
    plot->reset(nameOf(Distribution), PartTexts::value(answer.question.value), tr("工件数"));
    QVector<QPointF> bars;
    for (int i = 0; i < histogram.counts.size(); ++i)
        bars.append({histogram.first + (i + 0.5) * histogram.width, double(histogram.counts.at(i))});
    plot->addBars(tr("工件数"), bars, histogram.width, lookColors().accent);
    QVector<QPointF> curve;
    for (double z = -4; z <= 4 && summary.sigma > 0; z += 0.1)
        curve.append({summary.mean + z * summary.sigma, histogram.normal(summary.mean + z * summary.sigma)});
    plot->addLine(tr("正态曲线"), curve, lookColors().text);
    plot->addMark(tr("下限"), answer.question.tolerance.lower, lookColors().bad.ink);
    plot->addMark(tr("上限"), answer.question.tolerance.upper, lookColors().bad.ink);
    plot->addNote(tr("n = %1\n均值 %2\nσ %3\nCp %4\nCpk %5\n超限 %6")
                      .arg(summary.count)
                      .arg(number(summary.mean), number(summary.sigma), hundredths(answer.capability.cp),
                           hundredths(answer.capability.cpk), QString::number(answer.capability.outside)));
    plot->setTelling([](const QPointF& place) { return number(place.x()); });
}

QString Charts::ruleNames(ControlChart::Rules rules)
{
    QStringList names;
    const std::pair<ControlChart::Rule, QString> known[] = {
        {ControlChart::BeyondLimits, tr("超出控制限")},   {ControlChart::OneSide, tr("连续9点在均值同侧")},
        {ControlChart::Trend, tr("连续6点递增或递减")},   {ControlChart::TwoOfThree, tr("3点中2点超出2σ")},
        {ControlChart::FourOfFive, tr("5点中4点超出1σ")},
    };
    for (const auto& [rule, name] : known) {
        if (rules.testFlag(rule))
            names << name;
    }
    return names.join(QStringLiteral("，"));
}

/// Each value by its number.
void Charts::showControl(const Answer& answer, ResultPlot* plot)
{
    const ControlChart& chart = answer.control;
    plot->reset(nameOf(Control), tr("工件序号"), PartTexts::value(answer.question.value));
    QVector<QPointF> points;
    QVector<QPointF> broken;
    QVector<qint64> brokenIds;
    for (int i = 0; i < chart.values.size(); ++i) {
        points.append({double(i + 1), chart.values.at(i)});
        if (chart.broken.at(i)) {
            broken.append(points.last());
            brokenIds.append(answer.uids.value(i));
        }
    }
    plot->addDots(PartTexts::value(answer.question.value), points, lookColors().accent, answer.uids);
    plot->addDots(tr("违反判异准则"), broken, lookColors().bad.ink, brokenIds);
    plot->addLevel(QStringLiteral("UCL %1").arg(number(chart.upper())), chart.upper(), lookColors().bad.ink);
    plot->addLevel(tr("均值 %1").arg(number(chart.mean)), chart.mean, lookColors().text);
    plot->addLevel(QStringLiteral("LCL %1").arg(number(chart.lower())), chart.lower(), lookColors().bad.ink);
    int beyond = 0;
    for (const double range : chart.ranges)
        beyond += range > chart.upperRange() ? 1 : 0;
    plot->addNote(tr("σ %1\n平均移动极差 %2\n移动极差超限 %3\n违反准则 %4")
                      .arg(number(chart.sigma), number(chart.meanRange))
                      .arg(beyond)
                      .arg(broken.size()));
    plot->setTelling([chart](const QPointF& place) {
        const int at = qRound(place.x()) - 1;
        if (at < 0 || at >= chart.values.size())
            return QString();
        const QString rules = ruleNames(chart.broken.at(at));
        return QStringLiteral("%1: %2 %3").arg(at + 1).arg(number(chart.values.at(at)), rules);
    });
}

void Charts::showRanges(const Answer& answer, ResultPlot* plot)
{
    const ControlChart& chart = answer.control;
    plot->reset({}, tr("工件序号"), tr("移动极差"));
    QVector<QPointF> within;
    QVector<QPointF> beyond;
    QVector<qint64> withinIds;
    QVector<qint64> beyondIds;
    for (int i = 0; i < chart.ranges.size(); ++i) {
        const bool out = chart.ranges.at(i) > chart.upperRange();
        (out ? beyond : within).append({double(i + 2), chart.ranges.at(i)});
        (out ? beyondIds : withinIds).append(answer.uids.value(i + 1));
    }
    plot->addDots(tr("移动极差"), within, lookColors().accent, withinIds);
    plot->addDots(tr("超出控制限"), beyond, lookColors().bad.ink, beyondIds);
    plot->addLevel(QStringLiteral("UCL %1").arg(number(chart.upperRange())), chart.upperRange(), lookColors().bad.ink);
    plot->addLevel(tr("均值 %1").arg(number(chart.meanRange)), chart.meanRange, lookColors().text);
    plot->setTelling([chart](const QPointF& place) {
        const int at = qRound(place.x()) - 2;
        return at < 0 || at >= chart.ranges.size()
                   ? QString()
                   : QStringLiteral("%1: %2").arg(at + 2).arg(number(chart.ranges.at(at)));
    });
}

void Charts::showFailures(const Answer& answer, ResultPlot* plot)
{
    plot->reset(nameOf(Failures), {}, tr("工件数"));
    QStringList names;
    QVector<QPointF> bars;
    const auto add = [&](const QString& name, int count) {
        bars.append({double(names.size()), double(count)});
        names << name;
    };
    for (auto it = answer.byError.begin(); it != answer.byError.end(); ++it)
        add(it.key() == 0 ? tr("无代码") : PartTexts::error(it.key()), it.value());
    for (auto it = answer.byAngle.begin(); it != answer.byAngle.end(); ++it)
        add(tr("应答 %1°").arg(it.key()), it.value());
    plot->setNameAxis(names);
    plot->addBars(tr("未找到和拒绝"), bars, barShare, lookColors().bad.ink);
    plot->setTelling([names, bars](const QPointF& place) {
        const int at = qRound(place.x());
        return at >= 0 && at < names.size() ? tr("%1：%2 个工件").arg(names.at(at)).arg(int(bars.at(at).y()))
                                            : QString();
    });
}

void Charts::showMarks(const QVector<LogRow>& marks, ResultPlot* plot)
{
    constexpr int mostMarks = 40;
    QString last;
    int shown = 0;
    for (const LogRow& mark : marks) {
        const QString key = mark.time + mark.name.section(QLatin1Char('/'), 0, 1);
        if (key == last || ++shown > mostMarks) // several values of one change make one mark
            continue;
        last = key;
        const QDateTime time = QDateTime::fromString(mark.time, QStringLiteral("yyyy-MM-dd hh:mm:ss"));
        plot->addMark(mark.name, double(PartTable::wallOf(time)), lookColors().caution.ink);
    }
}
