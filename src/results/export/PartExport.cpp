#include "results/export/PartExport.h"

#include "results/data/Statistics.h"
#include "results/export/CsvTable.h"
#include "results/export/ExportProgress.h"
#include "results/export/XlsxTable.h"
#include "results/parts/PartColumns.h"
#include "results/parts/PartTexts.h"

#include <QMap>

namespace {

QString timeText(const QDateTime& time)
{
    return time.isValid() ? time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")) : QStringLiteral("–");
}

TableWriter::Row lineOf(const QString& station, const QString& model, const Statistics::Tally& tally)
{
    return {station, model, tally.found, tally.notFound, tally.refused, tally.parts(), tally.yield()};
}

} // namespace

/// By station and model.
struct PartExport::Tallies
{
    void add(const PartRow& row)
    {
        total.add(row.part.outcome);
        each[{row.part.station, row.part.model}].add(row.part.outcome);
    }

    Statistics::Tally total;
    QMap<QPair<int, QString>, Statistics::Tally> each;
};

QVector<TableWriter::Row> PartExport::yields(const Tallies& tallies)
{
    QVector<TableWriter::Row> lines{{tr("工位"), tr("型号"), PartTexts::outcome(PartOutcome::Found),
                                     PartTexts::outcome(PartOutcome::NotFound),
                                     PartTexts::outcome(PartOutcome::Refused), tr("合计"), tr("找到率 %")}};
    for (auto it = tallies.each.begin(); it != tallies.each.end(); ++it)
        lines.append(lineOf(PartTexts::station(it.key().first), it.key().second, it.value()));
    lines.append(lineOf(tr("全部"), {}, tallies.total));
    return lines;
}

QVector<TableWriter::Row> PartExport::describe(const PartFilter& filter)
{
    QStringList outcomes;
    for (const auto& [on, outcome] :
         {std::pair(filter.found, PartOutcome::Found), std::pair(filter.notFound, PartOutcome::NotFound),
          std::pair(filter.refused, PartOutcome::Refused)}) {
        if (on)
            outcomes << PartTexts::outcome(outcome);
    }
    QVector<TableWriter::Row> lines{{tr("从"), timeText(filter.from)}, {tr("到（不含）"), timeText(filter.to)}};
    lines.append({tr("工位"), filter.station > 0 ? PartTexts::station(filter.station) : tr("全部")});
    lines.append({tr("型号"), filter.model.isEmpty() ? tr("全部") : filter.model});
    lines.append({tr("结果"), outcomes.join(QStringLiteral(", "))});
    if (!filter.text.isEmpty())
        lines.append({tr("包含文字"), filter.text});
    if (filter.markedOnly)
        lines.append({tr("只含标记的"), tr("是")});
    return lines;
}

ExportOutcome PartExport::write(TableWriter& table, const QString& path, ExportProgress& progress,
                                Tallies& tallies) const
{
    PartReader reader(home);
    if (!reader.open())
        return ExportOutcome::failed(reader.error());
    QVector<int> ids = columns;
    for (int id = 0; columns.isEmpty() && id < PartColumns::Count; ++id)
        ids.append(id);
    QVector<ExportColumn> heads;
    for (const int id : qAsConst(ids))
        heads.append(PartColumns::column(id));
    if (!table.begin(heads))
        return ExportOutcome::failed(table.error());
    PartFilter upToNow = filter;
    upToNow.upTo = reader.lastRow();
    const int count = reader.count(upToNow);
    ExportOutcome outcome;
    TableWriter::Row cells(ids.size());
    const auto take = [&](const PartRow& row) {
        for (int i = 0; i < ids.size(); ++i)
            cells[i] = PartColumns::value(row, ids.at(i));
        tallies.add(row);
        progress.set(++outcome.written, count);
        return table.add(cells) && !progress.isCancelled();
    };
    const bool read = reader.each(upToNow, by, order, take);
    outcome.error = read ? table.error() : reader.error();
    if (outcome.error.isEmpty() && !progress.isCancelled())
        outcome.path = path;
    return outcome;
}

ExportOutcome PartExport::toCsv(const QString& path, ExportProgress& progress) const
{
    CsvTable table(path);
    Tallies tallies;
    const ExportOutcome outcome = write(table, path, progress, tallies);
    return !outcome.isGood() || table.finish() ? outcome : ExportOutcome::failed(table.error());
}

ExportOutcome PartExport::toXlsx(const QString& path, ExportProgress& progress) const
{
    XlsxTable table(path, tr("工件"));
    Tallies tallies;
    const ExportOutcome outcome = write(table, path, progress, tallies);
    if (!outcome.isGood())
        return outcome;
    const bool whole = table.addSheet(tr("汇总"), describe(filter) + QVector<TableWriter::Row>{{}} + yields(tallies));
    return whole && table.finish() ? outcome : ExportOutcome::failed(table.error());
}
