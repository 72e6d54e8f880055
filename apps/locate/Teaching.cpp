#include "Teaching.h"

#include "Locate.h"
#include "ModelTeacher.h"
#include "finder/Finder.h"
#include "finder/ImageConversion.h"

#include <QFileInfo>

namespace {

constexpr double hubSigma = 0.5;     // pixels; error of the distance between hub and hole
constexpr double mostDepthSigma = 5; // millimetres; above, a depth of 0 is as good

/// Where rim and hole of the model lie in an image; nothing, with the reason, when it is not found.
std::optional<finder::DepthSight> sightOf(const QString& path, const finder::HoleModel& model, cv::Size* size,
                                          QString* error)
{
    const QImage image = readImage(path);
    if (image.isNull()) {
        *error = QStringLiteral("%1: no image").arg(path);
        return {};
    }
    finder::Finder finder;
    const finder::FindResult found = finder.find(finder::toGray(image).gray, model);
    if (!found.found()) {
        *error = QStringLiteral("%1: %2").arg(path, finder::tipOf(found));
        return {};
    }
    *size = {image.width(), image.height()};
    return finder::DepthSight{found.hub, found.hole};
}

/// A point on the rim that the built-in model sees; (0, 0), which is on no rim, when it sees none.
QPointF seenRim(const QImage& image)
{
    finder::Finder finder;
    const finder::FindResult found = finder.find(finder::toGray(image).gray, finder::autoModel());
    return {found.hub.center.x + found.hub.radiusAt(0), found.hub.center.y};
}

} // namespace

Teaching::Teaching(SolutionStore* store)
    : m_store(store)
    , m_examples(store)
{
}

QVariantMap Teaching::parametersFor(const TeachOrder& order, const QImage& image, QString* error)
{
    const QVariantMap known = m_store->parameters(order.solution, order.model);
    if (!known.isEmpty())
        return known;
    if (order.kind == IModelExamples::Kind::Rejected) {
        *error = QStringLiteral("no model \"%1\" in solution \"%2\"").arg(order.model, order.solution);
        return {};
    }
    const QVariantMap taught =
        ModelTeacher().propose(image, order.rim ? *order.rim : seenRim(image), order.hole, error);
    if (taught.isEmpty())
        *error = QStringLiteral("%1: %2%3")
                     .arg(order.image, *error, order.rim ? QString() : QStringLiteral(" (--rim X,Y may help)"));
    return taught;
}

bool Teaching::create(const TeachOrder& order, const QVariantMap& parameters, QString* error)
{
    if (m_store->models(order.solution).contains(order.model))
        return true;
    const bool solution = m_store->list().contains(order.solution) || m_store->addSolution(order.solution, error);
    return solution && m_store->saveModel(order.solution, order.model, parameters, error);
}

QJsonObject Teaching::add(const TeachOrder& order, QString* error)
{
    const QImage image = readImage(order.image);
    if (image.isNull()) {
        *error = QStringLiteral("%1: no image").arg(order.image);
        return {};
    }
    const QString name = QFileInfo(order.image).fileName();
    const bool existed = m_store->models(order.solution).contains(order.model);
    const QVariantMap parameters = parametersFor(order, image, error);
    if (parameters.isEmpty())
        return {};
    QVariantMap example = m_examples.makeExample(image, parameters, order.hole, name, error);
    if (example.isEmpty()) {
        *error = QStringLiteral("%1: %2").arg(order.image, *error);
        return {};
    }
    if (!create(order, parameters, error) ||
        !m_examples.addExample(order.solution, order.model, order.kind, example, error))
        return {};
    example.remove(QStringLiteral("patch"));
    example.remove(QStringLiteral("source"));
    const IModelExamples::Examples all = m_examples.examples(order.solution, order.model);
    const QJsonObject proposed = proposal(order.solution, order.model, error);
    error->clear();
    return {{QStringLiteral("image"), name},
            {QStringLiteral("solution"), order.solution},
            {QStringLiteral("model"), order.model},
            {QStringLiteral("created"), !existed},
            {QStringLiteral("holes"), all.holes.size()},
            {QStringLiteral("rejected"), all.rejected.size()},
            {QStringLiteral("example"), QJsonObject::fromVariantMap(example)},
            {QStringLiteral("proposed"), proposed.isEmpty() ? QJsonValue() : QJsonValue(proposed)}};
}

QJsonObject Teaching::proposal(const QString& solution, const QString& model, QString* error)
{
    return QJsonObject::fromVariantMap(m_examples.proposeSizes(solution, model, error));
}

QJsonObject Teaching::depth(const QString& solution, const QString& model, const QStringList& images, QString* error)
{
    finder::HoleModel known;
    SolutionStore::Answer answer = SolutionStore::Answer::Hole;
    if (!m_store->lookUp(solution, model, &known, &answer)) {
        *error = QStringLiteral("no model \"%1\" in solution \"%2\"").arg(model, solution);
        return {};
    }
    if (known.camera.distance <= 0) {
        *error = QStringLiteral("solution \"%1\": solution.json names no camera with its distance").arg(solution);
        return {};
    }
    known.holeDepth = 0;
    std::vector<finder::DepthSight> sights;
    cv::Size size;
    for (const QString& image : images) {
        const std::optional<finder::DepthSight> sight = sightOf(image, known, &size, error);
        if (!sight)
            return {};
        sights.push_back(*sight);
    }
    const std::optional<finder::DepthEstimate> estimate =
        finder::estimateDepth(sights, known.camera.in(size), hubSigma);
    if (!estimate || estimate->sigma > mostDepthSigma) {
        const QString seen =
            estimate ? QStringLiteral(" (%1 +- %2 mm)").arg(estimate->depth, 0, 'f', 1).arg(estimate->sigma, 0, 'f', 1)
                     : QString();
        *error = QStringLiteral(
                     "these places do not tell the depth%1: they have to lie farther apart along the line from hub "
                     "to hole; nothing was stored")
                     .arg(seen);
        return {};
    }
    const double depth = std::round(estimate->depth * 10) / 10;
    QVariantMap parameters = m_store->parameters(solution, model);
    parameters.insert(QStringLiteral("hole_depth"), depth);
    if (!m_store->saveModel(solution, model, parameters, error))
        return {};
    return {{QStringLiteral("solution"), solution},
            {QStringLiteral("model"), model},
            {QStringLiteral("images"), images.size()},
            {QStringLiteral("hole_depth"), depth},
            {QStringLiteral("sigma"), std::round(estimate->sigma * 10) / 10}};
}
