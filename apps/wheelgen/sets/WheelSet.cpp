#include "WheelSet.h"

#include "render/Random.h"

#include <valvecell/HomeFiles.h>

#include <QDir>
#include <QJsonArray>

#include <opencv2/imgcodecs.hpp>

#include <atomic>
#include <cmath>
#include <mutex>
#include <thread>

namespace {

bool writeImage(const QString& path, const QString& format, const cv::Mat& image, QString* error)
{
    std::vector<uchar> bytes;
    if (!cv::imencode(("." + format).toStdString(), image, bytes)) {
        *error = QStringLiteral("%1: cannot be encoded").arg(path);
        return false;
    }
    QFile file(path);
    const auto size = static_cast<qint64>(bytes.size());
    if (file.open(QIODevice::WriteOnly) && file.write(reinterpret_cast<const char*>(bytes.data()), size) == size)
        return true;
    *error = QStringLiteral("%1: %2").arg(path, file.errorString());
    return false;
}

/// Runs task(0) to task(count - 1) on some threads, until one returns false.
template <typename Task>
bool runAll(int count, int jobs, Task task)
{
    std::atomic<int> next{0};
    std::atomic<bool> good{true};
    const auto work = [&] {
        for (int i = next++; i < count && good; i = next++)
            if (!task(i))
                good = false;
    };
    std::vector<std::thread> others;
    for (int i = 1; i < jobs; ++i)
        others.emplace_back(work);
    work();
    for (auto& thread : others)
        thread.join();
    return good;
}

bool hasHole(int number, double withoutHole)
{
    const auto upTo = [&](int count) { return std::floor(count * withoutHole + 0.5 + 1e-9); };
    return upTo(number + 1) <= upTo(number);
}

quint64 wheelSeed(quint64 setSeed, int number)
{
    return wheel::Random(setSeed, static_cast<quint64>(number) + 1000).next();
}

QString edgeName(const wheel::HoleSpec& hole)
{
    switch (hole.edge) {
    case wheel::HoleEdge::Ring:
        return QStringLiteral("ring");
    case wheel::HoleEdge::Counterbore:
        return QStringLiteral("counterbore");
    case wheel::HoleEdge::Crescent:
        break;
    }
    return QStringLiteral("crescent");
}

/// A valve hides what else would be seen.
QString insideName(const wheel::HoleSpec& hole)
{
    if (hole.valve != wheel::Valve::None)
        return QStringLiteral("valve");
    switch (hole.inside) {
    case wheel::HoleInside::Gray:
        return QStringLiteral("gray");
    case wheel::HoleInside::Bright:
        return QStringLiteral("bright");
    case wheel::HoleInside::Lit:
        return QStringLiteral("lit");
    case wheel::HoleInside::Dark:
        break;
    }
    return QStringLiteral("dark");
}

} // namespace

QVector<PlannedWheel> WheelSet::wheels(const WheelSetPlan& plan)
{
    QVector<const wheel::Design*> designs;
    for (const auto& design : wheel::designs())
        if (plan.designs.isEmpty() || plan.designs.contains(QString::fromStdString(design.key)))
            designs.append(&design);
    QVector<PlannedWheel> result;
    for (int i = 0; i < plan.count && !designs.isEmpty(); ++i) {
        const QString file = QStringLiteral("%1.%2").arg(i + 1, 4, 10, QLatin1Char('0')).arg(plan.format);
        result.append({file, wheel::drawWheel(*designs[i % designs.size()], plan.difficulty, plan.size,
                                              wheelSeed(plan.seed, i), hasHole(i, plan.withoutHole))});
    }
    return result;
}

double WheelSet::mmPerPx(cv::Size size)
{
    return 230.0 / wheel::nominalRimRadius(size);
}

QJsonObject WheelSet::truthEntry(const PlannedWheel& planned)
{
    const wheel::WheelTruth truth = wheel::truthOf(planned.spec);
    const wheel::Design* design = wheel::findDesign(planned.spec.design);
    const wheel::HoleSpec& hole = planned.spec.hole;
    const auto ifHole = [&](const QJsonValue& value) { return truth.hole ? value : QJsonValue(); };
    return {{QStringLiteral("file"), planned.file},
            {QStringLiteral("model"), QString::fromStdString(design->name)},
            {QStringLiteral("index"), design->plcIndex},
            {QStringLiteral("hole"), truth.hole},
            {QStringLiteral("angle"), ifHole(truth.angle)},
            {QStringLiteral("x"), ifHole(truth.holeCenter.x)},
            {QStringLiteral("y"), ifHole(truth.holeCenter.y)},
            {QStringLiteral("hub_x"), truth.hub.x},
            {QStringLiteral("hub_y"), truth.hub.y},
            {QStringLiteral("rim_radius"), truth.rimRadius},
            {QStringLiteral("ring_radius"), truth.ringRadius},
            {QStringLiteral("hole_radius"), truth.holeRadius},
            {QStringLiteral("edge_radius"), ifHole(truth.edgeRadius)},
            {QStringLiteral("edge"), ifHole(edgeName(hole))},
            {QStringLiteral("inside"), ifHole(insideName(hole))}};
}

QJsonObject WheelSet::modelParameters(const wheel::Nominal& nominal, double spread)
{
    return {{QStringLiteral("rim_radius"), nominal.rimRadius},
            {QStringLiteral("rim_radius_tol"), spread + 2},
            {QStringLiteral("ring_radius"), nominal.ringRadius},
            {QStringLiteral("ring_radius_tol"), spread + 2},
            {QStringLiteral("hole_radius"), nominal.holeRadius},
            {QStringLiteral("hole_radius_tol"), spread + 15},
            {QStringLiteral("score_limit"), 0.5},
            {QStringLiteral("taught"), true}};
}

/// truth.json goes first and comes last: while it is there, the folder is complete.
bool WheelSet::write(const QString& folder, const WheelSetPlan& plan, QString* error)
{
    const QString truthFile = folder + QStringLiteral("/truth.json");
    if (!QDir().mkpath(folder) || (QFile::exists(truthFile) && !QFile::remove(truthFile))) {
        *error = QStringLiteral("%1: cannot be written to").arg(folder);
        return false;
    }
    const QVector<PlannedWheel> planned = wheels(plan);
    std::mutex errorGuard;
    const bool rendered = runAll(planned.size(), plan.jobs, [&](int i) {
        QString problem;
        if (writeImage(folder + QLatin1Char('/') + planned[i].file, plan.format,
                       wheel::renderWheel(planned[i].spec).image, &problem))
            return true;
        const std::lock_guard<std::mutex> lock(errorGuard);
        *error = problem;
        return false;
    });
    if (!rendered)
        return false;
    QJsonArray truth;
    QJsonObject params;
    const double spread = plan.difficulty == wheel::Difficulty::Varied ? 10 : 2;
    for (const auto& one : planned) {
        truth.append(truthEntry(one));
        params[one.file] = modelParameters(wheel::nominalOf(one.spec), spread);
    }
    return HomeFiles::writeJson(folder + QStringLiteral("/params.json"), params, error) &&
           HomeFiles::writeJson(truthFile,
                                {{QStringLiteral("mm_per_px"), mmPerPx(plan.size)}, {QStringLiteral("images"), truth}},
                                error);
}
