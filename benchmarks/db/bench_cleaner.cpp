#include "../Bench.h"
#include "db/archive/QDiskCleanThread.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

constexpr int folders = 100;
constexpr int filesAFolder = 1000;

const QString& archive()
{
    static const QTemporaryDir root;
    static const QString path = [] {
        for (int day = 0; day < folders; ++day) {
            const QString folder =
                root.path() + QDate(2024, 1, 1).addDays(day).toString("/yyyy-MM-dd/") + "Station1/W18/";
            QDir().mkpath(folder);
            for (int i = 0; i < filesAFolder; ++i)
                QFile(folder + QString::number(i) + ".jpg").open(QIODevice::WriteOnly);
        }
        return root.path();
    }();
    return path;
}

/// Peak memory of the process in MB; 0 where it is not known.
double peakMegabytes()
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

void resetPeak()
{
    QFile file("/proc/self/clear_refs");
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

/// All files are younger than the limit and there is space: the pass looks at everything and deletes nothing.
void cleanerPass(benchmark::State& state)
{
    QDiskCleanThread cleaner;
    cleaner.setMode(static_cast<int>(state.range(0)));
    cleaner.setAgeCleaning(true);
    cleaner.setRootPath(archive());
    cleaner.setFreeSpaceProbe([](const QString&) { return qint64(1) << 40; });
    resetPeak();
    const double before = peakMegabytes();
    Laps laps(state);
    for (auto _ : state)
        laps.time([&] { cleaner.pass(); });
    state.counters["grown_MB"] = peakMegabytes() - before;
}

} // namespace

BENCHMARK(cleanerPass)
    ->ArgName("folders")
    ->Arg(QDiskCleanThread::Files)
    ->Arg(QDiskCleanThread::Folders)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
