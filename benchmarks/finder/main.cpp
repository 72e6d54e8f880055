#include "SetBench.h"

#include <QCoreApplication>

#include <opencv2/core/utility.hpp>

#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

bool asksForSets(const QStringList& arguments)
{
    for (const QString& argument : arguments)
        if (argument == QLatin1String("--set") || argument.startsWith(QLatin1String("--set=")))
            return true;
    return false;
}

int runSets(const QStringList& arguments)
{
    SetOptions options;
    QString error;
    const bool understood = parseSetOptions(arguments, &options, &error);
    if (understood && options.help)
        std::printf("%s", qUtf8Printable(setUsage()));
    if (understood && (options.help || benchmarkSets(options, &error)))
        return 0;
    std::fprintf(stderr, "bench_finder: %s\n", qUtf8Printable(error));
    return understood ? 1 : 2;
}

} // namespace

int main(int argc, char** argv)
{
    cv::setNumThreads(1); // one station has one thread
    const QCoreApplication application(argc, argv);
    if (asksForSets(QCoreApplication::arguments()))
        return runSets(QCoreApplication::arguments());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
