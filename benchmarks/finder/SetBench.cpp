#include "SetBench.h"

#include "MissMontage.h"
#include "Rivals.h"
#include "SetTally.h"
#include "finder/Finder.h"
#include "finder/HoleExamples.h"
#include "sets/TruthFile.h"

#include <valvecell/HomeFiles.h>

#include <QCommandLineParser>
#include <QFileInfo>
#include <QJsonArray>

#include <opencv2/imgcodecs.hpp>

#include <algorithm>

namespace {

constexpr int leastOfACause = 3; // pictures; fewer say nothing
constexpr int examplesShown = 3;
constexpr size_t missesShown = 60;

void addOptions(QCommandLineParser& parser)
{
    const auto text = [](const char* english) { return QString::fromLatin1(english); };
    parser.setApplicationDescription(text("Scores the finder on folders of pictures with a truth.json. Without --set "
                                          "it measures wheels that it renders itself."));
    parser.addOptions({{{text("h"), text("help")}, text("Show this text.")},
                       {text("set"), text("A folder; may be given several times."), text("DIR")},
                       {text("params"), text("taught, auto or both (both)."), text("WHICH"), text("both")},
                       {text("no-rivals"), text("Leave out Hough circles and templates.")},
                       {text("misses"), text("Picture of what the finder fared worst with."), text("FILE.png")},
                       {text("json"), text("Writes everything, each picture's outcome too."), text("FILE")}});
}

/// Through memory, because OpenCV opens no file whose name is not ASCII everywhere.
cv::Mat imageOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    if (bytes.isEmpty())
        return {};
    const cv::Mat buffer(1, bytes.size(), CV_8UC1, const_cast<char*>(bytes.constData()));
    return cv::imdecode(buffer, cv::IMREAD_GRAYSCALE);
}

Truth truthOf(const KnownPicture& picture)
{
    return {picture.hole, {picture.x, picture.y}, picture.holeRadius, picture.angle};
}

/// A montage has letters for ASCII only.
std::string captionOf(const QStringList& causes)
{
    QStringList readable;
    for (const QString& cause : causes)
        if (cause == QString::fromLatin1(cause.toLatin1()))
            readable.append(QString(cause).remove(QStringLiteral(" ")));
    return readable.join(QLatin1Char(' ')).toStdString();
}

/// One folder, from its truth to its table.
class SetRun
{
public:
    SetRun(const SetOptions& options, MissMontage* misses);
    bool run(const QString& folder, QString* error);
    const SetTally& tally() const { return m_tally; }
    const QJsonArray& pictures() const { return m_pictures; }

private:
    void measure(const KnownPicture& picture, const cv::Mat& image, const finder::HoleModel& taught);

    /// With the sizes alone; and, once three pictures of the design's hole were shown, with these as well.
    void findTaught(const KnownPicture& picture, const cv::Mat& image, finder::HoleModel taught);
    finder::FindResult find(Way way, const KnownPicture& picture, const cv::Mat& image, finder::HoleModel model);

    /// Whether the hole was among the candidates of the last find.
    bool wasJudged(const Truth& truth) const;
    void findByRivals(const KnownPicture& picture, const cv::Mat& image, const finder::HoleModel& model);
    static Answer asRefusal(Answer answer);
    void note(Way way, const KnownPicture& picture, const finder::FindResult& result, Verdict verdict, double seconds);

    const SetOptions& m_options;
    MissMontage* m_misses;
    finder::Finder m_finder;
    HoughRival m_hough;
    TemplateRival m_templates;
    std::map<QString, std::shared_ptr<finder::HoleExamples>> m_shown; ///< of each design
    SetTally m_tally;
    QJsonArray m_pictures;
};

SetRun::SetRun(const SetOptions& options, MissMontage* misses)
    : m_options(options)
    , m_misses(misses)
{
}

bool SetRun::run(const QString& folder, QString* error)
{
    TruthFile truth;
    if (!truth.read(folder, error))
        return false;
    for (const KnownPicture& picture : truth.pictures()) {
        const QString path = folder + QLatin1Char('/') + picture.file;
        const cv::Mat image = imageOf(path);
        finder::HoleModel taught;
        QString problem;
        if (image.empty())
            *error = QStringLiteral("%1: cannot be read as an image").arg(path);
        else if (!finder::applyParameters(picture.parameters, &taught, &problem))
            *error = QStringLiteral("%1/params.json, %2: %3").arg(folder, picture.file, problem);
        if (!error->isEmpty())
            return false;
        const KnownDepth& depth = picture.depth;
        taught.camera = {{depth.principalX, depth.principalY}, depth.distance, depth.pixelSize};
        taught.holeDepth = depth.hole;
        measure(picture, image, taught);
    }
    return true;
}

void SetRun::measure(const KnownPicture& picture, const cv::Mat& image, const finder::HoleModel& taught)
{
    if (m_options.taught)
        findTaught(picture, image, taught);
    if (m_options.builtIn)
        find(Way::Auto, picture, image, finder::autoModel());
    if (m_options.rivals)
        findByRivals(picture, image, taught);
}

void SetRun::findTaught(const KnownPicture& picture, const cv::Mat& image, finder::HoleModel taught)
{
    const finder::FindResult result = find(Way::Taught, picture, image, taught);
    std::shared_ptr<finder::HoleExamples>& shown = m_shown[picture.design];
    if (!shown)
        shown = std::make_shared<finder::HoleExamples>();
    if (shown->holes.size() == examplesShown) {
        taught.examples = shown;
        find(Way::Examples, picture, image, taught);
    } else if (picture.hole && result.hub.radius > 0) {
        const cv::Point2d hole(picture.x, picture.y);
        finder::HoleExamples::add(&shown->holes, finder::makeExample(image, result.hub, hole, picture.holeRadius));
    }
}

finder::FindResult SetRun::find(Way way, const KnownPicture& picture, const cv::Mat& image, finder::HoleModel model)
{
    const Truth truth = truthOf(picture);
    finder::FindResult result;
    const auto [answer, seconds] = timed([&] { return answerOf(result = m_finder.find(image, model)); });
    m_tally.add(way, picture.causes, truth, answer, seconds);
    if (truth.hole)
        m_tally.addJudged(way, wasJudged(truth));
    note(way, picture, result, verdictOf(truth, answer), seconds);
    if (way == Way::Taught || !m_options.taught)
        m_misses->consider(QFileInfo(picture.file).completeBaseName().toStdString(), image, captionOf(picture.causes),
                           truth, result);
    model.scoreLimit = 0;
    const finder::FindResult unlimited = m_finder.find(image, model);
    m_tally.addUnlimited(way, truth, answerOf(unlimited), unlimited.score);
    return result;
}

bool SetRun::wasJudged(const Truth& truth) const
{
    const std::vector<finder::RankedHole>& holes = m_finder.trace().holes;
    return std::any_of(holes.begin(), holes.end(), [&](const finder::RankedHole& hole) {
        return cv::norm(hole.seen.center - truth.center) <= wrongPlace * truth.radius;
    });
}

void SetRun::findByRivals(const KnownPicture& picture, const cv::Mat& image, const finder::HoleModel& model)
{
    const Truth truth = truthOf(picture);
    const auto add = [&](Way way, const std::pair<Answer, double>& timedAnswer) {
        m_tally.add(way, picture.causes, truth, timedAnswer.first, timedAnswer.second);
    };
    add(Way::Hough, timed([&] { return asRefusal(m_hough.find(image, model)); }));
    // A design that is new takes the hole of the set's first.
    const std::string own = picture.design.toStdString(), design = m_templates.taught(own) ? own : std::string();
    if (m_templates.taught(design))
        add(Way::Templates, timed([&] { return asRefusal(m_templates.find(design, image, model)); }));
    if (!picture.hole)
        return;
    for (const std::string& kind : {own, std::string()})
        if (!m_templates.taught(kind))
            m_templates.teach(kind, image, truth);
}

Answer SetRun::asRefusal(Answer answer)
{
    answer.error = static_cast<int>(answer.found ? finder::FindError::None : finder::FindError::NoHole);
    return answer;
}

void SetRun::note(Way way, const KnownPicture& picture, const finder::FindResult& result, Verdict verdict,
                  double seconds)
{
    QJsonObject entry{{QStringLiteral("file"), picture.file},
                      {QStringLiteral("way"), QLatin1String(nameOf(way))},
                      {QStringLiteral("verdict"), QLatin1String(nameOf(verdict))},
                      {QStringLiteral("outcome"), QLatin1String(nameOf(result.error))},
                      {QStringLiteral("score"), result.score},
                      {QStringLiteral("next_score"), result.runnerUpScore},
                      {QStringLiteral("ms"), 1e3 * seconds}};
    if (result.found()) {
        entry[QStringLiteral("x")] = result.hole.x;
        entry[QStringLiteral("y")] = result.hole.y;
        entry[QStringLiteral("radius")] = result.holeRadius;
        entry[QStringLiteral("angle")] = result.angle;
    }
    m_pictures.append(entry);
}

} // namespace

QString setUsage()
{
    QCommandLineParser parser;
    addOptions(parser);
    return parser.helpText();
}

bool parseSetOptions(const QStringList& arguments, SetOptions* options, QString* error)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        *error = parser.errorText();
        return false;
    }
    const QString params = parser.value(QStringLiteral("params"));
    options->folders = parser.values(QStringLiteral("set"));
    options->taught = params != QLatin1String("auto");
    options->builtIn = params != QLatin1String("taught");
    options->rivals = !parser.isSet(QStringLiteral("no-rivals"));
    options->misses = parser.value(QStringLiteral("misses"));
    options->json = parser.value(QStringLiteral("json"));
    options->help = parser.isSet(QStringLiteral("help"));
    if (!parser.positionalArguments().isEmpty())
        *error = QStringLiteral("\"%1\" belongs to no option").arg(parser.positionalArguments().first());
    else if (!QStringList{QStringLiteral("taught"), QStringLiteral("auto"), QStringLiteral("both")}.contains(params))
        *error = QStringLiteral("--params: \"%1\" is none of taught, auto, both").arg(params);
    return error->isEmpty();
}

bool benchmarkSets(const SetOptions& options, QString* error)
{
    MissMontage misses(missesShown);
    QJsonArray sets;
    for (const QString& folder : options.folders) {
        SetRun run(options, &misses);
        if (!run.run(folder, error))
            return false;
        std::printf("%s== %s\n", sets.isEmpty() ? "" : "\n", folder.toUtf8().constData());
        run.tally().print(stdout, leastOfACause);
        std::fflush(stdout);
        QJsonObject set = run.tally().json();
        set[QStringLiteral("set")] = folder;
        set[QStringLiteral("pictures")] = run.pictures();
        sets.append(set);
    }
    if (!options.misses.isEmpty() && !misses.write(options.misses))
        *error = QStringLiteral("%1: cannot be written").arg(options.misses);
    else if (!options.json.isEmpty())
        HomeFiles::writeJson(options.json, {{QStringLiteral("sets"), sets}}, error);
    return error->isEmpty();
}
