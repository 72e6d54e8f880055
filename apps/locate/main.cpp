#include "Report.h"
#include "Teaching.h"

#include <valvecell/HomeFiles.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonDocument>

#include <opencv2/core/utility.hpp>

#include <cstdio>
#include <thread>

namespace {

enum ExitCode { Done = 0, SomeNotJudged = 1, NotTaught = 1, WrongUse = 2, EmptyFolder = 3 };

const char description[] =
    R"(Runs the valve-hole finder on image files: one JSON line each, in the order of the arguments.

Fields: image (its path), name (of the file), status ("found", "nothing", or "error" when it could not be judged),
problem (then why, else null), found, angle (degrees; 361 without a hole), x, y, radius (of the hole, pixels; null
without one), hub_x, hub_y, rim_radius (null without a hub), score, runner_up, edge_points, residual, error and tip
(why there is no hole; 0 with one), ms. With --against also change ("same", "moved", "gained", "lost", "missed"),
moved_px, turned_deg and, of the second run, edited.

Exit code: 0 every image was judged, with a hole or without; 1 some could not be judged, or nothing was taught;
2 wrong use; 3 a folder holds no image.)";

int fail(const QString& text, ExitCode code = WrongUse)
{
    std::fprintf(stderr, "locate: %s\n", qUtf8Printable(text));
    return code;
}

void addOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QString::fromLatin1(description));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {QStringLiteral("home"), QStringLiteral("Directory that holds user/solutions."), QStringLiteral("DIR")},
        {QStringLiteral("solution"),
         QStringLiteral("Solution that the model belongs to; may be left out while there is "
                        "only one."),
         QStringLiteral("S")},
        {QStringLiteral("model"), QStringLiteral("Model; without it the built-in one."), QStringLiteral("M"),
         finder::autoModelName()},
        {QStringLiteral("params"), QStringLiteral("Parameters by image name that stand in for the model's."),
         QStringLiteral("FILE.json")},
        {QStringLiteral("against"),
         QStringLiteral("Edited parameters, for example a model file: every image is run with them as well, and each "
                        "line tells what changed."),
         QStringLiteral("FILE.json")},
        {QStringLiteral("csv"), QStringLiteral("Writes a table for spreadsheets as well."), QStringLiteral("FILE")},
        {QStringLiteral("jobs"), QStringLiteral("Images located at the same time."), QStringLiteral("N"),
         QStringLiteral("1")},
    });
    TeachCommand::addOptions(parser);
    parser.addPositionalArgument(QStringLiteral("images"), QStringLiteral("Image files or folders of images."),
                                 QStringLiteral("IMAGE-or-FOLDER..."));
}

bool loadModel(const QCommandLineParser& parser, finder::HoleModel* model, QString* error)
{
    const QString name = parser.value(QStringLiteral("model"));
    if (!parser.isSet(QStringLiteral("solution")) && name == finder::autoModelName()) {
        *model = finder::autoModel();
        return true;
    }
    SolutionStore store = readSolutions();
    const QString solution = solutionOf(parser, store);
    SolutionStore::Answer answer = SolutionStore::Answer::Hole;
    *error = solution.isEmpty()
                 ? QStringLiteral("there are several solutions: --solution says which one is meant")
                 : QStringLiteral("no model \"%1\" in solution \"%2\" of %3").arg(name, solution, HomeFiles::home());
    return store.lookUp(solution, name, model, &answer);
}

bool loadParameters(const QString& file, QJsonObject* parameters, QString* error)
{
    if (file.isEmpty())
        return true;
    const HomeFiles::JsonRead read = HomeFiles::readJson(file);
    *parameters = read.object;
    *error = read.error;
    return read.state == HomeFiles::JsonRead::Good;
}

/// The edited parameters are tried on the model here, so that a mistake in them ends the run before the first image.
bool loadPlan(const QCommandLineParser& parser, LocatePlan* plan, QString* error)
{
    QJsonObject edited;
    const bool loaded = loadModel(parser, &plan->model, error) &&
                        loadParameters(parser.value(QStringLiteral("params")), &plan->parameters, error) &&
                        loadParameters(parser.value(QStringLiteral("against")), &edited, error);
    plan->edited = edited.toVariantMap();
    finder::HoleModel tried = plan->model;
    return loaded && finder::applyParameters(plan->edited, &tried, error);
}

void printLine(const QJsonObject& object)
{
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    std::fflush(stdout);
}

int run(const QStringList& files, const LocatePlan& plan, const QString& csvFile)
{
    bool allJudged = true;
    ComparisonSummary summary;
    const bool table = !csvFile.isEmpty();
    QByteArray csv = Report::csvHeader(!plan.edited.isEmpty());
    locateAll(files, plan, [&](const Located& located) {
        if (!located.problem.isEmpty())
            std::fprintf(stderr, "locate: %s: %s\n", qUtf8Printable(located.file), qUtf8Printable(located.problem));
        allJudged = located.problem.isEmpty() && allJudged;
        printLine(Report::lineOf(located));
        summary.add(located);
        if (table)
            csv += Report::csvLine(located);
    });
    if (!plan.edited.isEmpty())
        std::fprintf(stderr, "%s\n", qUtf8Printable(summary.text()));
    QString error;
    if (table && !HomeFiles::writeFile(csvFile, csv, &error))
        return fail(error);
    return allJudged ? Done : SomeNotJudged;
}

int teach(const QCommandLineParser& parser)
{
    SolutionStore store = readSolutions();
    QString error = TeachCommand::misuse(parser, store);
    if (!error.isEmpty())
        return fail(error);
    const QJsonObject answer = TeachCommand::run(parser, store, &error);
    if (answer.isEmpty())
        return fail(error, NotTaught);
    printLine(answer);
    return Done;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("locate"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VALVECELL_VERSION));
    cv::setNumThreads(1);
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(app);
    if (parser.isSet(QStringLiteral("home")))
        HomeFiles::setHome(parser.value(QStringLiteral("home")));
    if (TeachCommand::isAsked(parser))
        return teach(parser);
    bool isNumber = false;
    LocatePlan plan;
    QString error;
    plan.jobs = parser.value(QStringLiteral("jobs")).toInt(&isNumber);
    if (!isNumber || plan.jobs < 1 || plan.jobs > 256)
        return fail(QStringLiteral("--jobs must be a number from 1 to 256"));
    if (parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("no image or folder given"));
    if (!loadPlan(parser, &plan, &error))
        return fail(error);
    QStringList empty;
    const QStringList files = imageFiles(parser.positionalArguments(), &empty);
    const int code = run(files, plan, parser.value(QStringLiteral("csv")));
    for (const QString& folder : qAsConst(empty))
        fail(QStringLiteral("%1: no image in this folder (%2)").arg(folder, imagePatternText()));
    return code == Done && !empty.isEmpty() ? EmptyFolder : code;
}
