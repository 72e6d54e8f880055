#include "results/export/ShiftReport.h"

#include "db/PartTable.h"
#include "results/export/ExportProgress.h"
#include "results/export/LogExport.h"
#include "results/export/ReportCharts.h"
#include "results/export/ReportPaper.h"
#include "results/parts/PartTexts.h"

#include <QBuffer>
#include <QImageReader>
#include <QLocale>
#include <QPdfWriter>
#include <QSaveFile>

#include <cmath>

namespace {

constexpr int dotsAnInch = 600;
constexpr int logoPixels = 600; // of a drawing's height
constexpr int mostReasons = 12;
constexpr int longestCell = 400; // characters: a row stays far below a page
constexpr int longestLine = 1500;

QString minute(qint64 wall)
{
    return PartTable::timeOf(wall).toString(QStringLiteral("yyyy-MM-dd hh:mm"));
}

QString percent(double yield)
{
    return std::isnan(yield) ? QStringLiteral("–") : QString::number(yield, 'f', 2);
}

QStringList cellsOf(const QString& station, const QString& model, const Statistics::Tally& tally)
{
    return {station,
            model,
            QString::number(tally.parts()),
            QString::number(tally.found),
            QString::number(tally.notFound),
            QString::number(tally.refused),
            percent(tally.yield())};
}

QString cut(const QString& text, int longest)
{
    return text.size() > longest ? text.left(longest) + QChar(0x2026) : text;
}

/// A logo that cannot be read is none.
QImage readLogo(const QString& path)
{
    QImageReader reader(path);
    if (path.isEmpty() || !reader.canRead())
        return {};
    if (path.endsWith(QLatin1String(".svg")))
        reader.setScaledSize(reader.size().scaled(4 * logoPixels, logoPixels, Qt::KeepAspectRatio));
    return reader.read();
}

void prepare(QPdfWriter& writer, const QString& title)
{
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins({0, 0, 0, 0});
    writer.setResolution(dotsAnInch);
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("ValveCell"));
}

} // namespace

/// Once for the number of pages, and once with it.
ExportOutcome ShiftReport::toPdf(const QString& path, ExportProgress& progress) const
{
    const ReportData data = ReportData::read(home, span, cell, [&progress] { return !progress.isCancelled(); });
    if (!data.error.isEmpty())
        return ExportOutcome::failed(data.error);
    progress.set(1, 3);
    const QDateTime made = QDateTime::currentDateTime();
    int pages = 0;
    {
        QBuffer draft;
        draft.open(QIODevice::WriteOnly);
        QPdfWriter writer(&draft);
        prepare(writer, {});
        pages = print(data, made, &writer, 1);
    }
    progress.set(2, 3);
    if (progress.isCancelled())
        return {};
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return ExportOutcome::failed(tr("不能写入 %1：%2").arg(path, file.errorString()));
    {
        QPdfWriter writer(&file);
        prepare(writer, data.cell + QLatin1Char(' ') + span.title);
        print(data, made, &writer, pages);
    }
    if (progress.isCancelled())
        return {};
    if (!file.flush() || !file.commit())
        return ExportOutcome::failed(tr("不能写入 %1：%2").arg(path, file.errorString()));
    progress.set(3, 3);
    return {path, {}, data.total.parts(), 0};
}

int ShiftReport::print(const ReportData& data, const QDateTime& made, QPagedPaintDevice* device, int pages)
{
    const QString foot = tr("生成时间 %1").arg(made.toString(QStringLiteral("yyyy-MM-dd hh:mm")));
    ReportPaper paper(device, data.cell + QStringLiteral("  ") + data.span.title, foot, pages);
    heading(data, paper);
    counts(data, paper);
    hours(data, paper);
    reasons(data, paper);
    if (data.found.size() > 0)
        values(data, paper);
    fits(data, paper);
    failures(data, paper);
    events(data, paper);
    paper.signatures({tr("操作员 / 日期"), tr("班长 / 日期"), tr("质量 / 日期")});
    return paper.pages();
}

void ShiftReport::heading(const ReportData& data, ReportPaper& paper)
{
    const QString span = tr("%1 至 %2").arg(minute(data.span.begin), minute(data.span.end));
    paper.title(readLogo(data.logo), tr("%1 生产报告").arg(data.cell), {data.span.title, span});
}

void ShiftReport::counts(const ReportData& data, ReportPaper& paper)
{
    paper.heading(tr("产量和找到率"), 200);
    if (data.total.parts() == 0)
        return paper.text(tr("这段时间没有工件"));
    QVector<QStringList> rows;
    for (const ReportData::Line& line : data.lines)
        rows.append(cellsOf(PartTexts::station(line.station), line.model, line.tally));
    rows.append(cellsOf(tr("合计"), {}, data.total));
    paper.table({{tr("工位"), 0.14},
                 {tr("型号"), 0.26},
                 {tr("工件"), 0.12, true},
                 {tr("找到"), 0.12, true},
                 {tr("未找到"), 0.12, true},
                 {tr("拒绝"), 0.12, true},
                 {tr("找到率 %"), 0.12, true}},
                rows, true);
    QStringList beats;
    if (data.cycle.count > 0)
        beats << tr("节拍中位数 %1 s").arg(data.cycle.mean, 0, 'f', 1);
    if (data.replyMs.count > 0)
        beats << tr("应答时间平均 %1 ms，最长 %2 ms")
                     .arg(data.replyMs.mean, 0, 'f', 0)
                     .arg(data.replyMs.maximum, 0, 'f', 0);
    beats << tr("找到率 = 找到 / (找到 + 未找到)");
    paper.text(beats.join(QStringLiteral("    ")), ReportPaper::Faint);
}

void ShiftReport::hours(const ReportData& data, ReportPaper& paper)
{
    constexpr double height = 620;
    if (data.total.parts() == 0)
        return;
    const bool hourly = data.bucketSpan == Statistics::Span::Hour;
    paper.heading(hourly ? tr("每小时产量和找到率") : tr("每天产量和找到率"), height);
    const QString format = hourly ? QStringLiteral("hh:mm") : QStringLiteral("MM-dd");
    const QStringList legend{PartTexts::outcome(PartOutcome::Found), PartTexts::outcome(PartOutcome::NotFound),
                             PartTexts::outcome(PartOutcome::Refused), tr("找到率 %")};
    paper.figure(height, [&](QPainter& painter, const QRectF& place) {
        ReportCharts::yield(painter, place, data.buckets, format, legend);
    });
}

void ShiftReport::reasons(const ReportData& data, ReportPaper& paper)
{
    constexpr double row = 48;
    if (data.reasons.isEmpty())
        return;
    QVector<QPair<QString, int>> bars = data.reasons.mid(0, mostReasons);
    int others = 0;
    for (int i = mostReasons; i < data.reasons.size(); ++i)
        others += data.reasons.at(i).second;
    if (others > 0)
        bars.append({tr("其他 %1 种").arg(data.reasons.size() - mostReasons), others});
    for (auto& bar : bars)
        bar.first = bar.first.isEmpty() ? tr("无说明") : bar.first.section(QLatin1Char('\n'), 0, 0);
    paper.heading(tr("失败原因"), row * bars.size());
    paper.figure(row * bars.size(),
                 [&](QPainter& painter, const QRectF& place) { ReportCharts::bars(painter, place, bars); });
}

void ShiftReport::values(const ReportData& data, ReportPaper& paper)
{
    constexpr double height = 440;
    constexpr double split = 0.6;
    paper.newPage();
    paper.heading(tr("找到的工件：趋势和分布"), height);
    for (const Statistics::Value value : Statistics::values) {
        const QVector<double>& values = Statistics::column(data.found, value);
        const Statistics::Histogram histogram = Statistics::histogram(values, 40);
        const Statistics::Summary& summary = histogram.summary;
        if (summary.count == 0)
            continue;
        const QString note =
            tr("n %1   均值 %2   σ %3").arg(summary.count).arg(summary.mean, 0, 'f', 3).arg(summary.sigma, 0, 'f', 3);
        paper.figure(height, [&](QPainter& painter, const QRectF& place) {
            const double wide = place.width() * split;
            ReportCharts::trend(painter, QRectF(place.topLeft(), QSizeF(wide, place.height())), PartTexts::value(value),
                                data.span.begin, data.span.end, data.found.wall, values);
            ReportCharts::distribution(painter, place.adjusted(wide, 0, 0, 0), histogram, note);
        });
    }
}

void ShiftReport::fits(const ReportData& data, ReportPaper& paper)
{
    if (data.fits.isEmpty())
        return;
    paper.heading(tr("过程能力"), 200);
    const auto number = [](double value, int digits) {
        return std::isfinite(value) ? QString::number(value, 'f', digits) : QStringLiteral("–");
    };
    QVector<QStringList> rows;
    for (const ReportData::Fit& fit : data.fits)
        rows.append({cut(fit.model, longestCell), PartTexts::value(fit.value), number(fit.tolerance.lower, 3),
                     number(fit.tolerance.upper, 3), QString::number(fit.summary.count), number(fit.summary.mean, 3),
                     number(fit.summary.sigma, 4), number(fit.capability.cp, 2), number(fit.capability.cpk, 2),
                     QString::number(fit.capability.outside)});
    paper.table({{tr("型号"), 0.17},
                 {tr("数值"), 0.13},
                 {tr("下限"), 0.1, true},
                 {tr("上限"), 0.1, true},
                 {tr("工件"), 0.09, true},
                 {tr("均值"), 0.1, true},
                 {QStringLiteral("σ"), 0.09, true},
                 {QStringLiteral("Cp"), 0.07, true},
                 {QStringLiteral("Cpk"), 0.07, true},
                 {tr("超限"), 0.08, true}},
                rows);
    paper.text(tr("Cp = (上限 - 下限) / 6σ    Cpk = 到较近公差限的距离 / 3σ    σ 为样本标准差"), ReportPaper::Faint);
}

void ShiftReport::failures(const ReportData& data, ReportPaper& paper)
{
    if (data.failureCount == 0)
        return;
    paper.heading(tr("未找到和拒绝的工件"), 250);
    QVector<QStringList> rows;
    for (const PartRow& row : data.failures)
        rows.append({PartTexts::time(row.wall).mid(5, 14), PartTexts::station(row.part.station),
                     cut(row.part.model, longestCell), PartTexts::outcome(row.part.outcome),
                     cut(PartTexts::reason(row), longestCell), row.marked ? tr("是") : QString(),
                     cut(row.comment, longestCell)});
    paper.table({{tr("时间"), 0.14},
                 {tr("工位"), 0.1},
                 {tr("型号"), 0.14},
                 {tr("结果"), 0.11},
                 {tr("原因"), 0.27},
                 {tr("标记"), 0.07},
                 {tr("备注"), 0.17}},
                rows);
    if (data.failureCount > data.failures.size())
        paper.text(tr("还有 %1 个没有列出").arg(data.failureCount - data.failures.size()), ReportPaper::Faint);
}

void ShiftReport::events(const ReportData& data, ReportPaper& paper)
{
    if (data.events.isEmpty())
        return;
    paper.heading(tr("报警和更改"), 250);
    QVector<QStringList> rows;
    for (const ReportData::Event& event : data.events) {
        const LogRow& row = event.row;
        const QString whole =
            row.isChange ? QStringLiteral("%1: %2 → %3").arg(row.name, row.before, row.after) : row.message.trimmed();
        const QString text = cut(whole, longestLine);
        rows.append({row.time.mid(5), LogExport::kindOf(row),
                     event.times > 1 ? tr("%1（共 %2 次）").arg(text).arg(event.times) : text, row.user});
    }
    paper.table({{tr("时间"), 0.17}, {tr("类型"), 0.1}, {tr("内容"), 0.58}, {tr("用户"), 0.15}}, rows);
    if (data.eventCount > data.events.size())
        paper.text(tr("还有 %1 条没有列出").arg(data.eventCount - data.events.size()), ReportPaper::Faint);
}
