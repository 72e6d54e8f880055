#include "results/export/ReportData.h"

#include "db/PartTable.h"
#include "db/log/LogLine.h"
#include "results/data/PartReader.h"
#include "results/data/ToleranceStore.h"
#include "results/parts/PartTexts.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 msOfDay = 86400000;
constexpr int mostHours = 72; // above, a bar is a day

QString logoOf(const QString& home)
{
    for (const char* name : {"/user/logo.svg", "/user/logo.png"}) {
        const QString path = home + QLatin1String(name);
        if (QFileInfo(path).isFile())
            return path;
    }
    return {};
}

void tally(const PartSeries& series, ReportData& data)
{
    QMap<QPair<int, QString>, Statistics::Tally> each;
    for (int i = 0; i < series.size(); ++i) {
        const auto outcome = PartOutcome(series.outcome.at(i));
        each[{series.station.at(i), series.models.at(series.model.at(i))}].add(outcome);
        data.total.add(outcome);
    }
    for (auto it = each.begin(); it != each.end(); ++it)
        data.lines.append({it.key().first, it.key().second, it.value()});
}

/// Every hour of the span, also before the first part and after the last.
void divide(const PartSeries& series, ReportData& data)
{
    const qint64 step = data.bucketSpan == Statistics::Span::Hour ? msOfDay / 24 : msOfDay;
    const QVector<Statistics::Bucket> known = Statistics::buckets(series, data.bucketSpan, {});
    for (qint64 begin = data.span.begin - data.span.begin % step; begin < data.span.end; begin += step) {
        const auto same = std::find_if(known.begin(), known.end(),
                                       [begin](const Statistics::Bucket& bucket) { return bucket.begin == begin; });
        Statistics::Bucket empty;
        empty.begin = begin;
        empty.end = begin + step;
        data.buckets.append(same == known.end() ? empty : *same);
    }
}

/// Seconds between two parts of a station: the median tells the beat, however long a pause was.
Statistics::Summary cycleOf(const PartSeries& series)
{
    QVector<double> cycles;
    qint64 last[3] = {-1, -1, -1};
    for (int i = 0; i < series.size(); ++i) {
        qint64& before = last[qBound(0, int(series.station.at(i)), 2)];
        if (before >= 0)
            cycles.append((series.wall.at(i) - before) / 1000.0);
        before = series.wall.at(i);
    }
    Statistics::Summary summary = Statistics::summary(cycles);
    if (!cycles.isEmpty()) {
        std::nth_element(cycles.begin(), cycles.begin() + cycles.size() / 2, cycles.end());
        summary.mean = cycles.at(cycles.size() / 2);
    }
    return summary;
}

void takeFound(const PartSeries& series, PartSeries& found)
{
    for (int i = 0; i < series.size(); ++i) {
        if (series.outcome.at(i) != qint8(PartOutcome::Found))
            continue;
        found.wall.append(series.wall.at(i));
        found.uid.append(series.uid.at(i));
        found.angle.append(series.angle.at(i));
        found.x.append(series.x.at(i));
        found.y.append(series.y.at(i));
        found.score.append(series.score.at(i));
        found.replyMs.append(series.replyMs.at(i));
    }
    found.angle = Statistics::unwrapped(found.angle);
}

/// The found parts of a model, where a limit is set for one of its values.
void takeFits(const QString& home, const PartSeries& series, ReportData& data)
{
    QMap<QString, int> models;
    for (int model = 0; model < series.models.size(); ++model)
        models.insert(series.models.at(model), model);
    for (auto model = models.begin(); model != models.end(); ++model) {
        for (const Statistics::Value value : Statistics::values) {
            const Statistics::Tolerance tolerance = ToleranceStore::load(home, model.key(), value);
            if (std::isnan(tolerance.lower) && std::isnan(tolerance.upper))
                continue;
            QVector<double> found;
            for (int i = 0; i < series.size(); ++i) {
                if (series.model.at(i) == *model && series.outcome.at(i) == qint8(PartOutcome::Found))
                    found.append(Statistics::column(series, value).at(i));
            }
            if (value == Statistics::Angle)
                found = Statistics::unwrapped(found);
            const Statistics::Summary summary = Statistics::summary(found);
            if (summary.count > 0)
                data.fits.append({model.key(), value, tolerance, summary, Statistics::capability(found, tolerance)});
        }
    }
}

void takeFailures(PartReader& reader, PartFilter filter, ReportData& data)
{
    filter.found = false;
    QMap<QString, int> reasons;
    reader.each(filter, PartReader::Time, Qt::AscendingOrder, [&](const PartRow& row) {
        ++reasons[PartTexts::reason(row)];
        if (++data.failureCount <= ReportData::mostFailures)
            data.failures.append(row);
        return true;
    });
    for (auto it = reasons.begin(); it != reasons.end(); ++it)
        data.reasons.append({it.key(), it.value()});
    std::stable_sort(data.reasons.begin(), data.reasons.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
}

/// Errors, warnings and changes. A home without a log has none.
void takeEvents(const QString& home, ReportData& data)
{
    LogReader log(home);
    if (!log.open())
        return;
    const QDateTime begin = PartTable::timeOf(data.span.begin);
    const QDateTime end = PartTable::timeOf(data.span.end);
    const QString first = begin.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    const QString last = end.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    LogFilter filter;
    filter.from = begin.date();
    filter.to = end.date();
    QHash<QString, int> known;
    const auto take = [&](const LogRow& row) {
        if (row.time < first || row.time >= last || (!row.isChange && row.level > SystemLog::Warning))
            return true;
        const auto before = known.constFind(row.message);
        if (before != known.constEnd()) {
            ++data.events[*before].times;
        } else if (++data.eventCount <= ReportData::mostEvents) {
            known.insert(row.message, data.events.size());
            data.events.append({row, 1});
        }
        return true;
    };
    filter.least = SystemLog::Warning;
    log.each(filter, Qt::AscendingOrder, take);
    known.clear();
    filter.least = SystemLog::Trace;
    filter.worst = SystemLog::Information;
    filter.changesOnly = true;
    log.each(filter, Qt::AscendingOrder, take);
    std::stable_sort(data.events.begin(), data.events.end(),
                     [](const ReportData::Event& a, const ReportData::Event& b) { return a.row.time < b.row.time; });
}

} // namespace

ReportData::Span ReportData::Span::of(const Shifts& shifts, const Shifts::Shift& shift)
{
    const QString day = shift.day.toString(QStringLiteral("yyyy-MM-dd"));
    return {shifts.count() == 1 ? day : day + QLatin1Char(' ') + shifts.nameOf(shift.number), shift.begin, shift.end};
}

ReportData::Span ReportData::Span::day(const Shifts& shifts, const Shifts::Shift& oneOfIt)
{
    Shifts::Shift first = oneOfIt;
    while (first.number > 1)
        first = shifts.previous(first);
    return {first.day.toString(QStringLiteral("yyyy-MM-dd")), first.begin, first.begin + msOfDay};
}

ReportData ReportData::read(const QString& home, const Span& span, const QString& cell,
                            const std::function<bool()>& goOn)
{
    ReportData data;
    data.span = span;
    data.cell = cell.isEmpty() ? QDir(home).dirName() : cell;
    data.logo = logoOf(home);
    data.bucketSpan =
        (span.end - span.begin) / (msOfDay / 24) > mostHours ? Statistics::Span::Day : Statistics::Span::Hour;
    PartReader reader(home);
    if (!reader.open()) {
        data.error = reader.error();
        return data;
    }
    PartFilter filter;
    filter.from = PartTable::timeOf(span.begin);
    filter.to = PartTable::timeOf(span.end);
    filter.upTo = reader.lastRow();
    const PartSeries series = reader.series(filter, PartSeries::All, goOn);
    data.error = reader.error();
    tally(series, data);
    divide(series, data);
    data.cycle = cycleOf(series);
    data.replyMs = Statistics::summary(series.replyMs);
    takeFound(series, data.found);
    takeFits(home, series, data);
    if (goOn())
        takeFailures(reader, filter, data);
    if (goOn())
        takeEvents(home, data);
    return data;
}
