#include "results/export/LogExport.h"

#include "results/export/CsvTable.h"
#include "results/export/ExportProgress.h"

QString LogExport::kindOf(const LogRow& row)
{
    const QString names[] = {tr("错误"), tr("警告"), tr("信息"), tr("调试"), tr("跟踪")};
    return row.isChange ? tr("更改") : names[qBound(0, row.level, 4)];
}

ExportOutcome LogExport::toCsv(const QString& path, ExportProgress& progress) const
{
    LogReader reader(home);
    if (!reader.open())
        return ExportOutcome::failed(reader.error());
    CsvTable table(path);
    QVector<ExportColumn> columns;
    for (const QString& title : {tr("时间"), tr("类型"), tr("用户"), tr("设置"), tr("原值"), tr("新值"), tr("内容")})
        columns.append({title});
    if (!table.begin(columns))
        return ExportOutcome::failed(table.error());
    LogFilter upToNow = filter;
    upToNow.upTo = reader.lastRow();
    const int count = reader.count(upToNow);
    ExportOutcome outcome;
    const auto take = [&](const LogRow& row) {
        progress.set(++outcome.written, count);
        return table.add({row.time, kindOf(row), row.user, row.name, row.before, row.after, row.message}) &&
               !progress.isCancelled();
    };
    if (!reader.each(upToNow, Qt::DescendingOrder, take))
        return ExportOutcome::failed(reader.error());
    if (progress.isCancelled())
        return {};
    if (!table.error().isEmpty() || !table.finish())
        return ExportOutcome::failed(table.error());
    outcome.path = path;
    return outcome;
}
