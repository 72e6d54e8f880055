#include "results/export/ReportRound.h"

#include "config/ShiftConfig.h"
#include "db/PartTable.h"
#include "results/data/PartReader.h"
#include "results/export/ExportProgress.h"
#include "results/export/PartExport.h"
#include "results/export/ShiftReport.h"

#include <valvecell/HomeFiles.h>

namespace {

constexpr qint64 msOfOneDay = 86400000;
const QString untilKey = QStringLiteral("until");

QString statePath(const QString& home)
{
    return home + QStringLiteral("/user/reports-made.json");
}

ReportData::Span spanAt(const ShiftConfig& settings, const Shifts& shifts, qint64 wall)
{
    const Shifts::Shift shift = shifts.at(wall);
    return settings.reportWhen == QLatin1String(ShiftConfig::eachDay) ? ReportData::Span::day(shifts, shift)
                                                                      : ReportData::Span::of(shifts, shift);
}

/// -1: none yet.
qint64 readUntil(const QString& home)
{
    const QDateTime until = QDateTime::fromString(
        HomeFiles::readJson(statePath(home)).object.value(untilKey).toString(), Qt::ISODateWithMs);
    return until.isValid() ? PartTable::wallOf(until) : -1;
}

QString storeUntil(const QString& home, qint64 until)
{
    QString error;
    HomeFiles::writeJson(statePath(home), {{untilKey, PartTable::timeOf(until).toString(Qt::ISODateWithMs)}}, &error);
    return error;
}

/// Neither parts nor a database of them.
bool isIdle(const QString& home, const PartFilter& filter)
{
    PartReader reader(home);
    return !QFileInfo::exists(PartReader::databaseOf(home)) || (reader.open() && reader.count(filter) == 0);
}

} // namespace

/// A clock that was far ahead must not keep reports away until it gets there again.
ReportRound::Result ReportRound::run(const QString& home, qint64 now, ExportProgress& progress)
{
    Result result;
    ShiftConfig settings;
    settings.load(home, &result.error);
    if (!result.error.isEmpty())
        return result;
    if (!settings.writesReports()) {
        QFile::remove(statePath(home));
        return result;
    }
    const Shifts shifts = Shifts::fromText(settings.begins);
    const ReportData::Span present = spanAt(settings, shifts, now - delayMs);
    qint64 until = readUntil(home);
    if (until < 0 || until > present.end) {
        result.error = storeUntil(home, present.begin);
        return result;
    }
    until = qMax(until, spanAt(settings, shifts, now - daysBack * msOfOneDay).end);
    for (ReportData::Span span = spanAt(settings, shifts, until); span.end <= present.begin;
         span = spanAt(settings, shifts, span.end)) {
        result.error = write(home, settings, span, result.written, progress);
        if (result.error.isEmpty() && !progress.isCancelled())
            result.error = storeUntil(home, span.end);
        if (!result.error.isEmpty() || progress.isCancelled())
            break;
    }
    return result;
}

QString ReportRound::write(const QString& home, const ShiftConfig& settings, const ReportData::Span& span,
                           QStringList& written, ExportProgress& progress)
{
    PartExport parts;
    parts.home = home;
    parts.filter.from = PartTable::timeOf(span.begin);
    parts.filter.to = PartTable::timeOf(span.end);
    if (isIdle(home, parts.filter))
        return {};
    const QString folder = settings.reportFolderIn(home);
    if (settings.reportFolder.isEmpty() ? !QDir().mkpath(folder) : !QFileInfo(folder).isDir())
        return tr("报告“%1”没有写入：文件夹 %2 不存在，请检查磁盘或更改报告设置").arg(span.title, folder);
    const QString stem = folder + QLatin1Char('/') + QString(span.title).replace(QLatin1Char(' '), QLatin1Char('_'));
    QVector<ExportOutcome> outcomes;
    if (settings.reportPdf)
        outcomes.append(ShiftReport{home, span, settings.reportHeading}.toPdf(stem + QStringLiteral(".pdf"), progress));
    if (settings.reportXlsx)
        outcomes.append(parts.toXlsx(stem + QStringLiteral(".xlsx"), progress));
    for (const ExportOutcome& outcome : qAsConst(outcomes)) {
        if (!outcome.error.isEmpty())
            return tr("报告“%1”没有写入，稍后重试：%2").arg(span.title, outcome.error);
        if (outcome.isGood())
            written << outcome.path;
    }
    return {};
}
