#include "Teaching.h"

#include "Locate.h"
#include "ModelTeacher.h"
#include "finder/Finder.h"
#include "finder/ImageConversion.h"

#include <QFileInfo>

namespace {

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
