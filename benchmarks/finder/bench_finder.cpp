#include "MissMontage.h"
#include "Rivals.h"
#include "SetBench.h"
#include "finder/Finder.h"
#include "sets/WheelSet.h"

#include <QCoreApplication>

#include <opencv2/core/utility.hpp>

#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <thread>

namespace {

const cv::Size size5MP(2448, 2048);
const cv::Size size20MP(5472, 3648);

/// VALVECELL_BENCH_SEED sets another set of wheels.
quint64 seedOfReport()
{
    bool given = false;
    const quint64 seed = qgetenv("VALVECELL_BENCH_SEED").toULongLong(&given);
    return given ? seed : 424242;
}

/// A third of the wheels has no hole. VALVECELL_BENCH_WHEELS sets another number, 1500 for the full table.
int wheelCount()
{
    const int wanted = qEnvironmentVariableIntValue("VALVECELL_BENCH_WHEELS");
    return wanted > 0 ? wanted : 150;
}

QVector<PlannedWheel> wheels(int count, cv::Size size)
{
    WheelSetPlan plan;
    plan.count = count;
    plan.seed = seedOfReport();
    plan.withoutHole = 1.0 / 3;
    plan.size = size;
    return WheelSet::wheels(plan);
}

Truth truthOf(const wheel::WheelTruth& truth)
{
    return {truth.hole, truth.holeCenter, truth.holeRadius, truth.angle};
}

finder::HoleModel modelOf(const wheel::WheelSpec& spec)
{
    finder::HoleModel model;
    QString error;
    finder::applyParameters(WheelSet::modelParameters(wheel::nominalOf(spec), 10).toVariantMap(), &model, &error);
    return model;
}

template <typename Find>
void score(ScoreSheet& sheet, const Truth& truth, Find find)
{
    const auto [answer, seconds] = timed(find);
    sheet.add(truth, answer, seconds);
}

std::string circumstances(const wheel::WheelSpec& spec)
{
    char text[64];
    std::snprintf(text, sizeof text, "r %.1f  noise %.0f  blur %.1f%s", spec.hole.radius, spec.optics.noise,
                  spec.optics.blur, spec.hole.valve != wheel::Valve::None ? "  valve" : "");
    return text;
}

struct Table
{
    ScoreSheet taught;
    ScoreSheet builtIn;
    ScoreSheet hough;
    ScoreSheet templates;
};

/// VALVECELL_BENCH_MISSES names a PNG that shows what the taught model fared worst with.
void writeMisses(const MissMontage& misses)
{
    const QByteArray file = qgetenv("VALVECELL_BENCH_MISSES");
    if (!file.isEmpty() && !misses.write(QString::fromLocal8Bit(file)))
        qWarning("%s: cannot be written", file.constData());
}

/// Every way on every wheel, each image rendered once.
const Table& table()
{
    static const Table made = [] {
        Table sheets;
        finder::Finder finder;
        const HoughRival hough;
        TemplateRival templates;
        MissMontage misses;
        int number = 0;
        for (const PlannedWheel& planned : wheels(wheelCount(), size5MP)) {
            const wheel::RenderedWheel wheel = wheel::renderWheel(planned.spec);
            const finder::HoleModel model = modelOf(planned.spec);
            const Truth truth = truthOf(wheel.truth);
            const std::string& design = planned.spec.design;
            finder::FindResult result;
            score(sheets.taught, truth, [&] { return answerOf(result = finder.find(wheel.image, model)); });
            misses.consider(std::to_string(++number), wheel.image, circumstances(planned.spec), truth, result);
            score(sheets.builtIn, truth, [&] { return answerOf(finder.find(wheel.image, finder::autoModel())); });
            score(sheets.hough, truth, [&] { return hough.find(wheel.image, model); });
            if (templates.taught(design))
                score(sheets.templates, truth, [&] { return templates.find(design, wheel.image, model); });
            else if (truth.hole)
                templates.teach(design, wheel.image, truth);
        }
        writeMisses(misses);
        return sheets;
    }();
    return made;
}

void way(benchmark::State& state, ScoreSheet Table::*sheet)
{
    (table().*sheet).report(state);
}

void taughtModel20MP(benchmark::State& state)
{
    static const ScoreSheet sheet = [] {
        ScoreSheet made;
        finder::Finder finder;
        for (const PlannedWheel& planned : wheels(std::max(12, wheelCount() / 10), size20MP)) {
            const wheel::RenderedWheel wheel = wheel::renderWheel(planned.spec);
            score(made, truthOf(wheel.truth),
                  [&] { return answerOf(finder.find(wheel.image, modelOf(planned.spec))); });
        }
        return made;
    }();
    sheet.report(state);
    state.counters["times_5MP"] = sheet.seconds(0.5) / table().taught.seconds(0.5);
}

/// Both stations at once: how many times the throughput of one, where two processors are free.
void twoStations(benchmark::State& state)
{
    constexpr int repeats = 40;
    const PlannedWheel planned = wheels(1, size5MP).first();
    const cv::Mat image = wheel::renderWheel(planned.spec).image;
    const finder::HoleModel model = modelOf(planned.spec);
    const auto secondsOf = [&](int stations) {
        const auto start = std::chrono::steady_clock::now();
        std::vector<std::thread> threads;
        for (int i = 0; i < stations; ++i)
            threads.emplace_back([&] {
                finder::Finder finder;
                for (int k = 0; k < repeats; ++k)
                    benchmark::DoNotOptimize(finder.find(image, model));
            });
        for (std::thread& thread : threads)
            thread.join();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    double gain = 0;
    for (auto _ : state) {
        const double one = secondsOf(1);
        const double two = secondsOf(2);
        gain = std::max(gain, 2 * one / two);
        state.SetIterationTime(two);
    }
    state.counters["throughput_of_one"] = gain;
}

// The number of iterations is that of the wheels: every wheel counts once.
#define EACH_WHEEL UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(wheelCount())
BENCHMARK_CAPTURE(way, taught_model_5MP, &Table::taught)->EACH_WHEEL;
BENCHMARK_CAPTURE(way, auto_model_5MP, &Table::builtIn)->EACH_WHEEL;
BENCHMARK_CAPTURE(way, hough_circles_5MP, &Table::hough)->EACH_WHEEL;
BENCHMARK_CAPTURE(way, rotated_templates_5MP, &Table::templates)->EACH_WHEEL;
BENCHMARK(taughtModel20MP)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(12);
BENCHMARK(twoStations)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

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
