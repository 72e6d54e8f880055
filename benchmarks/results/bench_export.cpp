#include "../Bench.h"
#include "db/PartTable.h"
#include "db/StationDB.h"
#include "platform/System.h"
#include "results/export/ExportProgress.h"
#include "results/export/PartExport.h"
#include "results/export/ShiftReport.h"

#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>

namespace {

constexpr int parts = 100000;
const QDateTime start(QDate(2026, 3, 1), QTime(6, 0));

StationResult numbered(int i)
{
    StationResult result;
    PartRecord& part = result.part;
    part.station = 1 + i % 2;
    part.model = QStringLiteral("五辐-%1").arg(i % 12);
    part.outcome = i % 50 ? PartOutcome::Found : i % 100 ? PartOutcome::NotFound : PartOutcome::Refused;
    part.angle = (i * 37 % 3600) / 10.0;
    part.x = 100 + (i * 7919 % 1000) / 997.0;
    part.y = -20 + (i * 104729 % 1000) / 991.0;
    part.score = 80 + i % 20;
    part.imageMs = 20 + i % 7;
    part.resultMs = 60 + i % 31;
    part.replyMs = 70 + i % 37;
    part.user = QStringLiteral("李工");
    part.calibration = QStringLiteral("0a1b2c3d");
    result.value3 = QStringLiteral("score=0.9;plc=7;x=%1;y=%2").arg(part.x).arg(part.y);
    return result;
}

/// Two a second, a shift and a half.
const QString& home()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        QDir(folder.path()).mkpath(QStringLiteral("DBFiles"));
        StationDB database(folder.filePath(QStringLiteral("DBFiles/Pellix.db")));
        database.open();
        for (int i = 0; i < parts; ++i)
            database.insertResult(numbered(i), start.addMSecs(i * 500LL));
        return folder.path();
    }();
    return path;
}

double residentMiB()
{
    return static_cast<double>(platform::residentMemoryKiB()) / 1024;
}

template <typename Write>
void write(benchmark::State& state, const char* name, const Write& work)
{
    const QTemporaryDir folder;
    home();
    const double before = residentMiB();
    for (auto _ : state) {
        ExportProgress progress;
        const ExportOutcome outcome = work(folder.filePath(QLatin1String(name)), progress);
        if (!outcome.isGood())
            state.SkipWithError(qPrintable(outcome.error));
    }
    state.counters["before_MiB"] = before;
    state.counters["after_MiB"] = residentMiB();
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
