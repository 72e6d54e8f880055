#include "results/export/forms/ExportMenus.h"

#include "config/ShiftConfig.h"
#include "db/PartTable.h"
#include "results/charts/ResultPlot.h"
#include "results/export/LogExport.h"
#include "results/export/PictureExport.h"
#include "results/export/ShiftReport.h"
#include "results/export/forms/ChartExport.h"
#include "results/export/forms/ChartPicture.h"
#include "results/export/forms/ExportBar.h"

#include <QImage>

namespace {

ExportBar::Choice choice(std::function<QString()> text, const char* suffix, std::function<QString()> name,
                         std::function<ExportBar::Work()> prepare)
{
    return {std::move(text), QLatin1String(suffix), std::move(name), std::move(prepare)};
}

} // namespace

QString ExportMenus::stemOf(const QString& what)
{
    return what + QDateTime::currentDateTime().toString(QStringLiteral("_yyyy-MM-dd_hhmm"));
}

ReportData::Span ExportMenus::spanOf(const Parts& parts)
{
    const qint64 now = PartTable::wallNow();
    const PartFilter& filter = parts.table.filter;
    const Shifts::Shift shift = parts.shifts.at(filter.from.isValid() ? PartTable::wallOf(filter.from) : now);
    const ReportData::Span whole = ReportData::Span::of(parts.shifts, shift);
    if (!filter.from.isValid())
        return whole;
    const qint64 begin = PartTable::wallOf(filter.from);
    const qint64 end = filter.to.isValid() ? PartTable::wallOf(filter.to) : now;
    if (begin == whole.begin && (end == whole.end || (end > now && whole.end > now)))
        return whole;
    const qint64 shown = qMin(end, qMax(now, begin + 1));
    const QString last = PartTable::timeOf(shown - 1).toString(QStringLiteral("yyyy-MM-dd"));
    const QString first = filter.from.toString(QStringLiteral("yyyy-MM-dd"));
    return {first == last ? first : tr("%1 至 %2").arg(first, last), begin, shown};
}

void ExportMenus::addParts(ExportBar* bar, const std::function<Parts()>& shown)
{
    const auto tableName = [] { return stemOf(tr("工件")); };
    const auto pictureName = [] { return stemOf(tr("图片")); };
    bar->addChoice(choice([] { return tr("表格 (CSV)…"); }, "csv", tableName,
                          [shown]() -> ExportBar::Work {
                              return [table = shown().table](const QString& path, ExportProgress& p) {
                                  return table.toCsv(path, p);
                              };
                          }));
    bar->addChoice(choice([] { return tr("Excel 表格 (XLSX)…"); }, "xlsx", tableName,
                          [shown]() -> ExportBar::Work {
                              return [table = shown().table](const QString& path, ExportProgress& p) {
                                  return table.toXlsx(path, p);
                              };
                          }));
    bar->addChoice(choice([] { return tr("图片 (ZIP)…"); }, "zip", pictureName,
                          [shown]() -> ExportBar::Work {
                              return [pictures = PictureExport{shown().table.home, shown().table.filter}](
                                         const QString& path, ExportProgress& p) { return pictures.toZip(path, p); };
                          }));
    bar->addChoice(choice([] { return tr("图片 (文件夹)…"); }, "", pictureName,
                          [shown]() -> ExportBar::Work {
                              return [pictures = PictureExport{shown().table.home, shown().table.filter}](
                                         const QString& path, ExportProgress& p) { return pictures.toFolder(path, p); };
                          }));
    bar->addChoice(choice([] { return tr("这段时间的报告 (PDF)…"); }, "pdf", [shown] { return spanOf(shown()).title; },
                          [shown]() -> ExportBar::Work {
                              return [home = shown().table.home, span = spanOf(shown())](const QString& path,
                                                                                         ExportProgress& p) {
                                  ShiftConfig settings;
                                  settings.load(home);
                                  return ShiftReport{home, span, settings.reportHeading}.toPdf(path, p);
                              };
                          }));
}

void ExportMenus::addLog(ExportBar* bar, const std::function<Log()>& shown)
{
    bar->addChoice(choice([] { return tr("表格 (CSV)…"); }, "csv", [] { return stemOf(tr("日志")); },
                          [shown]() -> ExportBar::Work {
                              const Log log = shown();
                              return [log](const QString& path, ExportProgress& p) {
                                  return LogExport{log.home, log.filter}.toCsv(path, p);
                              };
                          }));
}

void ExportMenus::addChart(ExportBar* bar, ResultPlot* plot, const std::function<Charts::Answer()>& shown)
{
    const auto name = [shown] { return stemOf(Charts::nameOf(shown().question.kind)); };
    bar->addChoice(choice([] { return tr("数值 (CSV)…"); }, "csv", name,
                          [shown]() -> ExportBar::Work {
                              return [answer = shown()](const QString& path, ExportProgress& p) {
                                  return ChartExport::toCsv(answer, path, p);
                              };
                          }));
    bar->addChoice(choice([] { return tr("图表 (PNG)…"); }, "png", name,
                          [plot]() -> ExportBar::Work {
                              return [image = ChartPicture::image(plot)](const QString& path, ExportProgress&) {
                                  return ChartPicture::write(ChartPicture::png(image), path);
                              };
                          }));
    bar->addChoice(choice([] { return tr("图表 (PDF)…"); }, "pdf", name,
                          [plot]() -> ExportBar::Work {
                              return [bytes = ChartPicture::pdf(plot)](const QString& path, ExportProgress&) {
                                  return ChartPicture::write(bytes, path);
                              };
                          }));
}
