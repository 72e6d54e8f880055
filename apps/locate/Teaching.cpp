#include "Teaching.h"

#include "Locate.h"
#include "ModelTeacher.h"
#include "finder/Finder.h"
#include "finder/ImageConversion.h"

#include <valvecell/HomeFiles.h>

#include <QCommandLineParser>
#include <QFileInfo>

namespace {

constexpr double hubSigma = 0.5;     // pixels; error of the distance between hub and hole
constexpr double mostDepthSigma = 5; // millimetres; above, a depth of 0 is as good

/// Where rim and hole of the model lie in an image; nothing, with the reason, when it is not found.
std::optional<finder::DepthSight> sightOf(const QString& path, const finder::HoleModel& model, cv::Size* size,
                                          QString* error)
{
    QString problem;
    const QImage image = readImage(path, &problem);
    if (image.isNull()) {
        *error = QStringLiteral("%1: %2").arg(path, problem);
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

/// How deep the model's hole lies by these images; nothing, with the reason, when they leave it open.
std::optional<finder::DepthEstimate> depthFrom(const QStringList& images, const finder::HoleModel& model,
                                               QString* error)
{
    std::vector<finder::DepthSight> sights;
    cv::Size size;
    for (const QString& image : images) {
        const std::optional<finder::DepthSight> sight = sightOf(image, model, &size, error);
        if (!sight)
            return {};
        sights.push_back(*sight);
    }
    const std::optional<finder::DepthEstimate> estimate =
        finder::estimateDepth(sights, model.camera.in(size), hubSigma);
    if (estimate && estimate->sigma <= mostDepthSigma)
        return estimate;
    const QString seen =
        estimate ? QStringLiteral(" (%1 +- %2 mm)").arg(estimate->depth, 0, 'f', 1).arg(estimate->sigma, 0, 'f', 1)
                 : QString();
    *error = QStringLiteral("these places do not tell the depth%1: they have to lie farther apart along the line from "
                            "hub to hole; nothing was stored")
                 .arg(seen);
    return {};
}

/// A point on the rim that the built-in model sees; (0, 0), which is on no rim, when it sees none.
QPointF seenRim(const QImage& image)
{
    finder::Finder finder;
    const finder::FindResult found = finder.find(finder::toGray(image).gray, finder::autoModel());
    return {found.hub.center.x + found.hub.radiusAt(0), found.hub.center.y};
}

std::optional<QPointF> pointOf(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    bool isX = false;
    bool isY = false;
    const QPointF point(parts.value(0).toDouble(&isX), parts.value(1).toDouble(&isY));
    return isX && isY && parts.size() == 2 ? std::make_optional(point) : std::nullopt;
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
    QString problem;
    const QImage image = readImage(order.image, &problem);
    if (image.isNull()) {
        *error = QStringLiteral("%1: %2").arg(order.image, problem);
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
    const std::optional<finder::DepthEstimate> estimate = depthFrom(images, known, error);
    return estimate ? storeDepth(solution, model, *estimate, images.size(), error) : QJsonObject();
}

QJsonObject Teaching::storeDepth(const QString& solution, const QString& model, const finder::DepthEstimate& estimate,
                                 int images, QString* error)
{
    const double depth = std::round(estimate.depth * 10) / 10;
    QVariantMap parameters = m_store->parameters(solution, model);
    parameters.insert(QStringLiteral("hole_depth"), depth);
    if (!m_store->saveModel(solution, model, parameters, error))
        return {};
    return {{QStringLiteral("solution"), solution},
            {QStringLiteral("model"), model},
            {QStringLiteral("images"), images},
            {QStringLiteral("hole_depth"), depth},
            {QStringLiteral("sigma"), std::round(estimate.sigma * 10) / 10}};
}

SolutionStore readSolutions()
{
    SolutionStore store(HomeFiles::home() + QStringLiteral("/user/solutions"));
    store.read();
    return store;
}

QString solutionOf(const QCommandLineParser& parser, SolutionStore& store)
{
    if (parser.isSet(QStringLiteral("solution")))
        return parser.value(QStringLiteral("solution"));
    const QStringList known = store.list();
    return known.isEmpty() ? QStringLiteral("default") : known.size() == 1 ? known.first() : QString();
}

namespace TeachCommand {

void addOptions(QCommandLineParser& parser)
{
    parser.addOptions({
        {QStringLiteral("teach"),
         QStringLiteral("Adds the hole of this image to the model's examples; makes the model "
                        "when there is none."),
         QStringLiteral("IMAGE")},
        {QStringLiteral("reject"), QStringLiteral("Adds a place of this image to what is not the model's hole."),
         QStringLiteral("IMAGE")},
        {QStringLiteral("hole"), QStringLiteral("The place to teach or to reject, image pixels."),
         QStringLiteral("X,Y")},
        {QStringLiteral("rim"),
         QStringLiteral("A point on the rim's outer edge, for teaching a new model whose rim is "
                        "not seen by itself."),
         QStringLiteral("X,Y")},
        {QStringLiteral("propose"), QStringLiteral("Prints the parameters that the model's examples suggest, as "
                                                   "--against takes them; changes nothing.")},
        {QStringLiteral("teach-depth"),
         QStringLiteral(
             "Measures how deep the model's hole lies behind the rim from two or more images of one wheel in "
             "different places, and stores it as hole_depth.")},
    });
}

bool isAsked(const QCommandLineParser& parser)
{
    return parser.isSet(QStringLiteral("teach")) || parser.isSet(QStringLiteral("reject")) ||
           parser.isSet(QStringLiteral("propose")) || parser.isSet(QStringLiteral("teach-depth"));
}

QString misuse(const QCommandLineParser& parser, SolutionStore& store)
{
    const auto isSet = [&parser](const char* option) { return parser.isSet(QLatin1String(option)); };
    const auto isPoint = [&](const char* option) {
        return !isSet(option) || pointOf(parser.value(QLatin1String(option)));
    };
    const bool isDepth = isSet("teach-depth");
    if (isSet("teach") + isSet("reject") + isSet("propose") + isDepth > 1)
        return QStringLiteral("--teach, --reject, --propose and --teach-depth go one at a time");
    if (isDepth && parser.positionalArguments().size() < 2)
        return QStringLiteral("--teach-depth needs two images of one wheel at least");
    if (!isDepth && !parser.positionalArguments().isEmpty())
        return QStringLiteral("one image at a time is taught: \"%1\" is one too many")
            .arg(parser.positionalArguments().first());
    if (parser.value(QStringLiteral("model")) == finder::autoModelName())
        return QStringLiteral("--model must name a model of your own");
    if (!isDepth && !isSet("propose") && !isSet("hole"))
        return QStringLiteral("--hole X,Y must say where the place is");
    if (!isPoint("hole") || !isPoint("rim"))
        return QStringLiteral("--hole and --rim take two numbers, X,Y, in image pixels");
    return solutionOf(parser, store).isEmpty()
               ? QStringLiteral("there are several solutions: --solution says which one is meant")
               : QString();
}

QJsonObject run(const QCommandLineParser& parser, SolutionStore& store, QString* error)
{
    TeachOrder order;
    order.solution = solutionOf(parser, store);
    order.model = parser.value(QStringLiteral("model"));
    Teaching teaching(&store);
    if (parser.isSet(QStringLiteral("propose")))
        return teaching.proposal(order.solution, order.model, error);
    if (parser.isSet(QStringLiteral("teach-depth")))
        return teaching.depth(order.solution, order.model, parser.positionalArguments(), error);
    const bool rejected = parser.isSet(QStringLiteral("reject"));
    order.kind = rejected ? IModelExamples::Kind::Rejected : IModelExamples::Kind::Hole;
    order.image = parser.value(rejected ? QStringLiteral("reject") : QStringLiteral("teach"));
    order.hole = *pointOf(parser.value(QStringLiteral("hole")));
    order.rim = pointOf(parser.value(QStringLiteral("rim")));
    return teaching.add(order, error);
}

} // namespace TeachCommand
