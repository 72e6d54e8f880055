#include "HoleTruth.h"
#include "finder/MouthFit.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>

#include <cstdio>
#include <ctime>
#include <map>
#include <random>

/// Measures the last stage alone: fits a mouth to every hole of a set, from starts that are as wrong as those of the
/// stage before.
namespace {

constexpr double centerSlack = 0.15;  // of the radius, what a start is off at most
constexpr double radiusSlack = 0.125; // likewise
constexpr int startsOfHole = 2;

struct Options
{
    QStringList folders;
    bool taught = false; // whether the fit knows the radius, as with a model
    bool each = false;   // a line for each fit
};

/// Errors of one kind of hole, pixels.
struct Errors
{
    std::vector<double> center, radius, outer, time;
    int fallbacks = 0;
};

double quantile(std::vector<double> values, double share)
{
    if (values.empty())
        return 0;
    const auto at = values.begin() + std::lround(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

finder::Mouth startNear(const HoleTruth& truth, std::mt19937* random)
{
    std::uniform_real_distribution<double> share(0, 1);
    const double middle = std::sqrt(truth.major * truth.minor);
    const double off = centerSlack * middle * std::sqrt(share(*random));
    const double angle = 2 * CV_PI * share(*random);
    finder::Mouth start;
    start.center = truth.center + off * cv::Point2d(std::cos(angle), std::sin(angle));
    start.radius = middle * (1 + radiusSlack * (2 * share(*random) - 1));
    return start;
}

void add(const HoleTruth& truth, const finder::Mouth& mouth, double seconds, Errors* errors)
{
    errors->time.push_back(1000 * seconds);
    if (!mouth.valid) {
        ++errors->fallbacks;
        return;
    }
    errors->center.push_back(cv::norm(mouth.center - truth.center));
    errors->radius.push_back(std::abs(mouth.radius - truth.major));
}

void measure(const HoleTruth& truth, const Options& options, std::mt19937* random, std::map<QString, Errors>* byKind)
{
    const cv::Mat gray = cv::imread(truth.file.toStdString(), cv::IMREAD_GRAYSCALE);
    if (gray.empty()) {
        std::fprintf(stderr, "%s: cannot be read\n", qPrintable(truth.file));
        return;
    }
    finder::TaughtMouth taught;
    if (options.taught) {
        taught.radius = truth.major;
        taught.ring = cv::norm(truth.center - truth.hub);
    }
    for (int i = 0; i < startsOfHole; ++i) {
        const finder::Mouth start = startNear(truth, random);
        const std::clock_t begun = std::clock();
        const finder::Mouth mouth = finder::fitMouth(gray, start, truth.hub, taught);
        const double seconds = static_cast<double>(std::clock() - begun) / CLOCKS_PER_SEC;
        for (const QString& kind : QStringList{QStringLiteral("all")} + truth.kinds)
            add(truth, mouth, seconds, &(*byKind)[kind]);
        if (options.each)
            std::printf("%s %.2f %.2f %.2f %.2f %.2f %.2f %.2f %.2f %.1f %d %d %.2f %.2f %s\n", qPrintable(truth.file),
                        cv::norm(mouth.center - truth.center), mouth.center.x - truth.center.x,
                        mouth.center.y - truth.center.y, truth.major, truth.minor, truth.outer, start.radius,
                        mouth.radius, mouth.outerRadius - mouth.radius, mouth.filled, mouth.valid, mouth.residual,
                        mouth.spread, qPrintable(truth.kinds.join(QLatin1Char(','))));
    }
}

void report(const QString& folder, const std::map<QString, Errors>& byKind)
{
    std::printf("%s\n%-14s %5s  centre %5s %5s %5s  radius %5s %5s %5s  ms %5s %5s  outline\n", qPrintable(folder), "",
                "fits", "p50", "p95", "max", "p50", "p95", "max", "p50", "p95");
    for (const auto& [kind, errors] : byKind)
        std::printf("%-14s %5zu         %5.2f %5.2f %5.2f         %5.2f %5.2f %5.2f     %5.2f %5.2f  %d\n",
                    qPrintable(kind), errors.time.size(), quantile(errors.center, 0.5), quantile(errors.center, 0.95),
                    quantile(errors.center, 1), quantile(errors.radius, 0.5), quantile(errors.radius, 0.95),
                    quantile(errors.radius, 1), quantile(errors.time, 0.5), quantile(errors.time, 0.95),
                    errors.fallbacks);
}

} // namespace

int main(int argc, char** argv)
{
    cv::setNumThreads(1); // one station has one thread
    Options options;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        if (argument == QLatin1String("--taught"))
            options.taught = true;
        else if (argument == QLatin1String("--each"))
            options.each = true;
        else
            options.folders.append(argument);
    }
    if (options.folders.isEmpty()) {
        std::fprintf(stderr, "usage: bench_mouth [--taught] [--each] DIR...\n");
        return 2;
    }
    for (const QString& folder : options.folders) {
        QString error;
        const QVector<HoleTruth> truths = readTruth(folder, &error);
        if (truths.isEmpty()) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 1;
        }
        std::mt19937 random(4711);
        std::map<QString, Errors> byKind;
        for (const HoleTruth& truth : truths)
            measure(truth, options, &random, &byKind);
        report(folder, byKind);
    }
    return 0;
}
