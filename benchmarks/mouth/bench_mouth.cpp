#include "finder/mouth/MouthFit.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>

#include <cmath>
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

/// Where the hole of one image is; pixels, NaN where the set does not say.
struct HoleTruth
{
    QString file; ///< with its folder
    cv::Point2d center;
    cv::Point2d hub;
    double major = 0; ///< half axes of the mouth, the bore's upper edge
    double minor = 0;
    double outer = 0;  ///< radius of the outer edge of chamfer or counterbore, `major` without one
    QStringList kinds; ///< what it is like: edge, what stands inside, stress
};

/// The value of the first key that the object has.
double number(const QJsonObject& object, const QStringList& keys, double otherwise = std::nan(""))
{
    for (const QString& key : keys) {
        if (object.value(key).isDouble())
            return object.value(key).toDouble();
    }
    return otherwise;
}

QString text(const QJsonObject& object, const QStringList& keys)
{
    for (const QString& key : keys) {
        if (object.value(key).isString())
            return object.value(key).toString();
    }
    return {};
}

HoleTruth truthOf(const QJsonObject& image, const QString& folder)
{
    HoleTruth truth;
    truth.file = folder + QLatin1Char('/') + text(image, {QStringLiteral("file"), QStringLiteral("image")});
    truth.center = {number(image, {QStringLiteral("x"), QStringLiteral("vx")}),
                    number(image, {QStringLiteral("y"), QStringLiteral("vy")})};
    truth.hub = {number(image, {QStringLiteral("hub_x"), QStringLiteral("cx")}),
                 number(image, {QStringLiteral("hub_y"), QStringLiteral("cy")})};
    truth.major = number(image, {QStringLiteral("va"), QStringLiteral("hole_radius"), QStringLiteral("vr")});
    truth.minor =
        number(image, {QStringLiteral("vb"), QStringLiteral("hole_minor"), QStringLiteral("hole_radius")}, truth.major);
    truth.outer = number(image, {QStringLiteral("edge_radius"), QStringLiteral("outer_r"), QStringLiteral("outer")});
    for (const auto& key : {QStringLiteral("edge"), QStringLiteral("inside"), QStringLiteral("stem")}) {
        if (image.value(key).isString())
            truth.kinds.append(key + QLatin1Char(':') + image.value(key).toString());
    }
    for (const auto& tag : image.value(QStringLiteral("tags")).toArray())
        truth.kinds.append(tag.toString());
    truth.kinds.removeDuplicates();
    return truth;
}

/// Reads a set's truth.json, by wheelgen or by a renderer that writes a list of images. Images without a hole are left
/// out. On failure returns none and a sentence in `error`.
QVector<HoleTruth> readTruth(const QString& folder, QString* error)
{
    QFile file(folder + QStringLiteral("/truth.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
        return {};
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    const QJsonArray images =
        document.isArray() ? document.array() : document.object().value(QStringLiteral("images")).toArray();
    QVector<HoleTruth> result;
    for (const auto& image : images) {
        const HoleTruth truth = truthOf(image.toObject(), folder);
        if (std::isfinite(truth.center.x) && std::isfinite(truth.hub.x) && truth.major > 0)
            result.append(truth);
    }
    if (result.isEmpty())
        *error = QStringLiteral("%1: no image with a hole").arg(file.fileName());
    return result;
}

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
