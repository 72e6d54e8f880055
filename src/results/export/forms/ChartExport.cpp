#include "results/export/forms/ChartExport.h"

#include "results/export/CsvTable.h"
#include "results/export/ExportProgress.h"
#include "results/parts/PartTexts.h"

namespace {

using Row = TableWriter::Row;
using Rows = std::function<Row(int)>;

ExportColumn number(const QString& title)
{
    return {title, ExportColumn::Number, -1};
}

ExportColumn time(const QString& title)
{
    return {title, ExportColumn::Time};
}

Row tallyCells(const Statistics::Tally& tally)
{
    return {tally.found, tally.notFound, tally.refused, tally.yield()};
}

/// Without anything the mean would be 0.
QVariant meanOf(const Statistics::Summary& summary)
{
    return summary.count > 0 ? QVariant(summary.mean) : QVariant();
}

QVector<QPair<QString, int>> failuresOf(const Charts::Answer& answer, const QString& byError, const QString& byAngle)
{
    QVector<QPair<QString, int>> failures;
    for (auto it = answer.byError.begin(); it != answer.byError.end(); ++it)
        failures.append({byError.arg(it.key()) + QLatin1Char(' ') + PartTexts::error(it.key()), it.value()});
    for (auto it = answer.byAngle.begin(); it != answer.byAngle.end(); ++it)
        failures.append({byAngle.arg(it.key()), it.value()});
    return failures;
}

ExportOutcome write(const QString& path, const QVector<ExportColumn>& columns, int count, const Rows& row,
                    ExportProgress& progress)
{
    CsvTable table(path);
    bool good = table.begin(columns);
    for (int i = 0; good && i < count && !progress.isCancelled(); ++i) {
        good = table.add(row(i));
        progress.set(i + 1, count);
    }
    if (progress.isCancelled())
        return {};
    return good && table.finish() ? ExportOutcome{path, {}, count, 0} : ExportOutcome::failed(table.error());
}

} // namespace

ExportOutcome ChartExport::toCsv(const Charts::Answer& answer, const QString& path, ExportProgress& progress)
{
    const QVector<ExportColumn> outcomes{number(PartTexts::outcome(PartOutcome::Found)),
                                         number(PartTexts::outcome(PartOutcome::NotFound)),
                                         number(PartTexts::outcome(PartOutcome::Refused)), number(tr("找到率 %"))};
    const QString value = PartTexts::value(answer.question.value);
    const auto timed = [&](int i) { return Row{answer.walls.at(i), answer.values.at(i)}; };
    switch (answer.question.kind) {
    case Charts::Yield:
    case Charts::Cycle:
        return write(
            path,
            QVector<ExportColumn>{time(tr("从")), time(tr("到（不含）"))} + outcomes +
                QVector<ExportColumn>{number(tr("节拍 s")), number(PartTexts::value(Statistics::ReplyMs))},
            answer.buckets.size(),
            [&](int i) {
                const Statistics::Bucket& bucket = answer.buckets.at(i);
                return Row{bucket.begin, bucket.end} + tallyCells(bucket.tally) +
                       Row{meanOf(bucket.cycle), meanOf(bucket.replyMs)};
            },
            progress);
    case Charts::ByModel: {
        const QStringList models = answer.models.keys();
        return write(
            path, QVector<ExportColumn>{{tr("型号")}} + outcomes, models.size(),
            [&](int i) { return Row{models.at(i)} + tallyCells(answer.models.value(models.at(i))); }, progress);
    }
    case Charts::Trend:
        return write(path, {time(tr("时间")), number(value)}, answer.values.size(), timed, progress);
    case Charts::Scatter:
        return write(
            path, {time(tr("时间")), number(QStringLiteral("X")), number(QStringLiteral("Y"))}, answer.values.size(),
            [&](int i) { return timed(i) + Row{answer.others.at(i)}; }, progress);
    case Charts::Distribution: {
        const Statistics::Histogram& bins = answer.histogram;
        return write(
            path, {number(value + tr("：从")), number(value + tr("：到")), number(tr("工件数"))}, bins.counts.size(),
            [&](int i) {
                return Row{bins.first + i * bins.width, bins.first + (i + 1) * bins.width, bins.counts.at(i)};
            },
            progress);
    }
    case Charts::Control:
        return write(
            path, {time(tr("时间")), number(value), number(tr("移动极差")), number(tr("违反判异准则"))},
            answer.values.size(),
            [&](int i) {
                return timed(i) + Row{i > 0 ? QVariant(answer.control.ranges.at(i - 1)) : QVariant(),
                                      int(answer.control.broken.at(i))};
            },
            progress);
    case Charts::Failures:
        break;
    }
    const QVector<QPair<QString, int>> failures = failuresOf(answer, tr("错误码 %1"), tr("应答 %1°"));
    return write(
        path, {{tr("失败原因")}, number(tr("工件数"))}, failures.size(),
        [&](int i) {
            return Row{failures.at(i).first.trimmed(), failures.at(i).second};
        },
        progress);
}
