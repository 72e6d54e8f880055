#include "Locate.h"
#include "SolutionStore.h"

#include <valvecell/HomeFiles.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonDocument>

#include <opencv2/core/utility.hpp>

#include <cstdio>
#include <thread>

namespace {

enum ExitCode { Done = 0, SomeUnreadable = 1, WrongUse = 2 };

int fail(const QString& text)
{
    std::fprintf(stderr, "locate: %s\n", qUtf8Printable(text));
    return WrongUse;
}

void addOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral("Runs the valve-hole finder on image files: one JSON line each."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("home"), QStringLiteral("Directory that holds user/solutions."), QStringLiteral("DIR")},
        {QStringLiteral("solution"), QStringLiteral("Solution that the model belongs to."), QStringLiteral("S")},
        {QStringLiteral("model"), QStringLiteral("Model; without it the built-in one."), QStringLiteral("M"),
         finder::autoModelName()},
        {QStringLiteral("params"), QStringLiteral("Parameters by image name that stand in for the model's."),
         QStringLiteral("FILE.json")},
        {QStringLiteral("jobs"), QStringLiteral("Images located at the same time."), QStringLiteral("N"),
         QStringLiteral("1")},
    });
    parser.addPositionalArgument(QStringLiteral("images"), QStringLiteral("Image files or folders of images."),
                                 QStringLiteral("IMAGE-or-FOLDER..."));
}

bool loadModel(const QCommandLineParser& parser, finder::HoleModel* model, QString* error)
{
    const QString name = parser.value(QStringLiteral("model"));
    if (!parser.isSet(QStringLiteral("solution"))) {
        *model = finder::autoModel();
        *error = QStringLiteral("a model other than \"auto\" needs --solution");
        return name == finder::autoModelName();
    }
    const QString solution = parser.value(QStringLiteral("solution"));
    SolutionStore store(HomeFiles::home() + QStringLiteral("/user/solutions"));
    store.read();
    SolutionStore::Answer answer = SolutionStore::Answer::Hole;
    *error = QStringLiteral("no model \"%1\" in solution \"%2\" of %3").arg(name, solution, HomeFiles::home());
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

bool printLine(const Located& located)
{
    const QByteArray line = QJsonDocument(lineOf(located)).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    std::fflush(stdout);
    return located.read;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    cv::setNumThreads(1);
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(app);
    if (parser.isSet(QStringLiteral("home")))
        qputenv("VALVECELL_HOME", parser.value(QStringLiteral("home")).toUtf8());
    bool isNumber = false;
    const int jobs = parser.value(QStringLiteral("jobs")).toInt(&isNumber);
    finder::HoleModel model;
    QJsonObject parameters;
    QString error;
    if (!isNumber || jobs < 1 || jobs > 256)
        return fail(QStringLiteral("--jobs must be a number from 1 to 256"));
    if (parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("no image or folder given"));
    if (!loadModel(parser, &model, &error) ||
        !loadParameters(parser.value(QStringLiteral("params")), &parameters, &error))
        return fail(error);
    bool allRead = true;
    locateAll(imageFiles(parser.positionalArguments()), model, parameters, jobs,
              [&allRead](const Located& located) { allRead = printLine(located) && allRead; });
    return allRead ? Done : SomeUnreadable;
}
