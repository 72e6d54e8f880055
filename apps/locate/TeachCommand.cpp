#include "TeachCommand.h"

#include "Teaching.h"

#include <valvecell/HomeFiles.h>

#include <QCommandLineParser>

namespace {

std::optional<QPointF> pointOf(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    bool isX = false;
    bool isY = false;
    const QPointF point(parts.value(0).toDouble(&isX), parts.value(1).toDouble(&isY));
    return isX && isY && parts.size() == 2 ? std::make_optional(point) : std::nullopt;
}

} // namespace

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
