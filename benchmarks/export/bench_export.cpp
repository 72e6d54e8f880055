#include "../Bench.h"
#include "db/PartTable.h"
#include "db/SqlConnection.h"
#include "db/StationDB.h"
#include "results/export/ExportProgress.h"
#include "results/export/PartExport.h"
#include "results/export/ShiftReport.h"

#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>

namespace {

constexpr int parts = 100000;
const QDateTime start(QDate(2026, 3, 1), QTime(6, 0));

/// Two parts a second, a shift and a half.
const QString& home()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        QDir(folder.path()).mkpath(QStringLiteral("DBFiles"));
        const QString file = folder.filePath(QStringLiteral("DBFiles/Pellix.db"));
        StationDB(file).open();
        SqlConnection connection(QStringLiteral("QSQLITE"));
        connection.database().setDatabaseName(file);
        connection.database().open();
        const QString numbers =
            QStringLiteral("WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < %1) ").arg(parts);
        connection.exec(numbers +
                        QStringLiteral("INSERT INTO RltTable(uid, time, dAngle, errorType, matchScore, resultTip, "
                                       "stationName, value1, value2, value3) SELECT i, '', i * 37 % 3600 / 10.0, 0, "
                                       "80 + i % 20, '', 'Station_1', '', '1_a', 'score=0.9' FROM n"));
        connection.exec(numbers +
                        QStringLiteral("INSERT INTO PartTable SELECT %1 + i * 500, i, 1 + i % 2, 'A-' || (i % "
                                       "12), 7, CASE WHEN i % 50 THEN 0 ELSE 1 END, 0, i * 37 % 3600 / "
                                       "10.0, 100 + i * 7919 % 1000 / 997.0, -20 + i * 104729 % 1000 / "
                                       "991.0, 80 + i % 20, 20 + i % 7, 60 + i % 31, 70 + i % 37, 'Li', "
                                       "'0a1b2c3d', '' FROM n")
                            .arg(PartTable::wallOf(start)));
        return folder.path();
    }();
    return path;
}

/// Most that was ever resident, as Linux tells it; 0 elsewhere.
double peakMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    const int at = text.indexOf("VmHWM:");
    return at < 0 ? 0 : text.mid(at + 6, 20).trimmed().split(' ').first().toDouble() / 1024;
}

template <typename Write>
void write(benchmark::State& state, const char* name, const Write& work)
{
    const QTemporaryDir folder;
    home();
    for (auto _ : state) {
        ExportProgress progress;
        const ExportOutcome outcome = work(folder.filePath(QLatin1String(name)), progress);
        if (!outcome.isGood())
            state.SkipWithError(qPrintable(outcome.error));
    }
    state.counters["peak_MiB"] = peakMiB();
    state.counters["file_MiB"] = double(QFileInfo(folder.filePath(QLatin1String(name))).size()) / 1048576;
}

void csv(benchmark::State& state)
{
    PartExport table;
    table.home = home();
    write(state, "a.csv", [&](const QString& path, ExportProgress& progress) { return table.toCsv(path, progress); });
}

void xlsx(benchmark::State& state)
{
    PartExport table;
    table.home = home();
    write(state, "a.xlsx", [&](const QString& path, ExportProgress& progress) { return table.toXlsx(path, progress); });
}

void report(benchmark::State& state)
{
    const qint64 begin = PartTable::wallOf(start);
    const ShiftReport shift{home(), {QStringLiteral("2026-03-01"), begin, begin + 86400000}, {}};
    write(state, "a.pdf", [&](const QString& path, ExportProgress& progress) { return shift.toPdf(path, progress); });
}

} // namespace

BENCHMARK(csv)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(xlsx)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(report)->Unit(benchmark::kMillisecond)->Iterations(3);

int main(int argc, char** argv)
{
    return runBenchmarks<QGuiApplication>(argc, argv);
}
