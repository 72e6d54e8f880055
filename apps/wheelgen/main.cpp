#include "Printing.h"
#include "sets/DemoHome.h"
#include "sets/WheelSet.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>
#include <QThread>

#include <opencv2/core/utility.hpp>

#include <cstdio>

namespace {

/// What the command line asks for.
struct Options
{
    enum Task { Help, Set, Demo };
    Task task = Help;
    QString out; ///< folder of the set
    WheelSetPlan set;
    DemoPlan demo;
};

/// Larger images fit no camera, and would take the machine's memory.
constexpr int maxSide = 20000;
constexpr qint64 maxPixels = 200'000'000;

QStringList designKeys()
{
    QStringList keys;
    for (const auto& design : wheel::designs())
        keys.append(QString::fromStdString(design.key));
    return keys;
}

QList<QCommandLineOption> commandLine()
{
    const auto text = [](const char* english) { return QString::fromLatin1(english); };
    return {{{text("h"), text("help")}, text("Show this text.")},
            {{text("v"), text("version")}, text("Show the version.")},
            {text("out"), text("Render wheels into this folder, with truth.json."), text("DIR")},
            {text("count"), text("Number of wheels (16)."), text("N"), text("16")},
            {text("seed"), text("Seed of everything that is random (1)."), text("S"), text("1")},
            {text("without-hole"), text("Part of the wheels that has no valve hole, 0 to 1 (0)."), text("FRACTION"),
             text("0")},
            {text("design"), text("One design only: ") + designKeys().join(text(", ")) + text("."), text("NAME")},
            {text("difficulty"), text("easy, demo or varied (varied)."), text("LEVEL"), text("varied")},
            {text("size"), text("Size of the images (2448x2048)."), text("WxH"), text("2448x2048")},
            {text("format"), text("bmp or png (bmp)."), text("FORMAT"), text("bmp")},
            {text("jobs"), text("Wheels rendered at the same time (all processors)."), text("N")},
            {text("demo"), text("Make a complete demo home with two stations; what is there stays."), text("HOME")},
            {text("fresh"), text("With --demo: make it anew, without what the cell has stored in it.")},
            {text("port"), text("With --demo: the program's port."), text("NAME")},
            {text("cameras-from"), text("With --demo: both cameras deliver this folder's images."), text("DIR")},
            {text("network-cameras"), text("With --demo: the cameras are network cameras at 127.0.0.2 and .3.")}};
}

/// Reads option values one after the other and keeps the first complaint.
class Reader
{
public:
    explicit Reader(const QCommandLineParser& parser)
        : m_parser(parser)
    {
    }

    const QString& error() const { return m_error; }
    void complain(const QString& text)
    {
        if (m_error.isEmpty())
            m_error = text;
    }

    int integer(const char* name, int low, int high)
    {
        bool good = false;
        const int value = text(name).toInt(&good);
        require(good && value >= low && value <= high, name,
                QStringLiteral("a number from %1 to %2").arg(low).arg(high));
        return value;
    }

    double fraction(const char* name)
    {
        bool good = false;
        const double value = text(name).toDouble(&good);
        require(good && value >= 0 && value <= 1, name, QStringLiteral("a number from 0 to 1"));
        return value;
    }

    quint64 seed()
    {
        bool good = false;
        const quint64 value = text("seed").toULongLong(&good);
        require(good, "seed", QStringLiteral("a whole number, not negative"));
        return value;
    }

    QString choice(const char* name, const QStringList& choices)
    {
        require(choices.contains(text(name)), name, QStringLiteral("one of ") + choices.join(QStringLiteral(", ")));
        return text(name);
    }

    cv::Size size()
    {
        static const QRegularExpression form(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
        const auto match = form.match(text("size"));
        const cv::Size size(match.captured(1).toInt(), match.captured(2).toInt());
        const bool good = size.width >= 64 && size.height >= 64 && size.width <= maxSide && size.height <= maxSide;
        require(good && qint64(size.width) * size.height <= maxPixels, "size",
                QStringLiteral("WIDTHxHEIGHT, each from 64 to %1, at most %2 pixels").arg(maxSide).arg(maxPixels));
        return size;
    }

    QString folder(const char* name)
    {
        require(!text(name).isEmpty(), name, QStringLiteral("a folder"));
        return QDir(text(name)).absolutePath();
    }

private:
    QString text(const char* name) const { return m_parser.value(QLatin1String(name)); }

    void require(bool good, const char* name, const QString& wanted)
    {
        if (!good)
            complain(QStringLiteral("--%1: \"%2\" is not %3").arg(QLatin1String(name), text(name), wanted));
    }

    const QCommandLineParser& m_parser;
    QString m_error;
};

void readSet(Reader& read, const QCommandLineParser& parser, Options* options)
{
    options->task = Options::Set;
    options->out = read.folder("out");
    WheelSetPlan& set = options->set;
    set.count = read.integer("count", 1, 1'000'000);
    set.seed = read.seed();
    set.withoutHole = read.fraction("without-hole");
    if (parser.isSet(QStringLiteral("design")))
        set.designs = QStringList{read.choice("design", designKeys())};
    const QString level =
        read.choice("difficulty", {QStringLiteral("easy"), QStringLiteral("demo"), QStringLiteral("varied")});
    wheel::difficultyFromName(level.toStdString(), &set.difficulty);
    set.size = read.size();
    set.format = read.choice("format", {QStringLiteral("bmp"), QStringLiteral("png")});
}

void readDemo(Reader& read, const QCommandLineParser& parser, Options* options)
{
    options->task = Options::Demo;
    DemoPlan& demo = options->demo;
    demo.home = read.folder("demo");
    demo.fresh = parser.isSet(QStringLiteral("fresh"));
    demo.port = parser.value(QStringLiteral("port"));
    demo.network = parser.isSet(QStringLiteral("network-cameras"));
    demo.size = read.size();
    if (!parser.isSet(QStringLiteral("cameras-from")))
        return;
    demo.camerasFrom = read.folder("cameras-from");
    if (!QFileInfo(demo.camerasFrom).isDir())
        read.complain(QStringLiteral("--cameras-from: there is no folder %1").arg(demo.camerasFrom));
}

/// The first option that is given although the task has no use for it.
QString idleOption(const QCommandLineParser& parser, bool demo)
{
    const QStringList ofSet{QStringLiteral("count"),  QStringLiteral("seed"),       QStringLiteral("without-hole"),
                            QStringLiteral("design"), QStringLiteral("difficulty"), QStringLiteral("format")};
    for (const QString& name : demo ? ofSet
                                    : QStringList{QStringLiteral("fresh"), QStringLiteral("port"),
                                                  QStringLiteral("cameras-from"), QStringLiteral("network-cameras")})
        if (parser.isSet(name))
            return name;
    return {};
}

QString usage()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Renders sample wheels with their exact truth.\n"
                       "Exit code: 0 done; 1 a file cannot be written; 2 wrong arguments."));
    parser.addOptions(commandLine());
    return parser.helpText();
}

/// Reads the arguments, the program's name not among them. False with a sentence that names the option when they make
/// no sense.
bool parseOptions(const QStringList& arguments, Options* options, QString* error)
{
    QCommandLineParser parser;
    parser.addOptions(commandLine());
    if (!parser.parse(QStringList{QStringLiteral("wheelgen")} + arguments)) {
        *error = parser.errorText();
        return false;
    }
    if (parser.isSet(QStringLiteral("help")))
        return true;
    Reader read(parser);
    const bool demo = parser.isSet(QStringLiteral("demo"));
    const QString idle = idleOption(parser, demo);
    if (!parser.positionalArguments().isEmpty())
        read.complain(QStringLiteral("\"%1\" belongs to no option").arg(parser.positionalArguments().first()));
    if (demo == parser.isSet(QStringLiteral("out")))
        read.complain(QStringLiteral("give either --out DIR or --demo HOME"));
    if (!idle.isEmpty())
        read.complain(QStringLiteral("--%1 has no use with --%2")
                          .arg(idle, demo ? QStringLiteral("demo") : QStringLiteral("out")));
    demo ? readDemo(read, parser, options) : readSet(read, parser, options);
    const int jobs = parser.isSet(QStringLiteral("jobs")) ? read.integer("jobs", 1, 256) : QThread::idealThreadCount();
    options->set.jobs = options->demo.jobs = jobs;
    *error = read.error();
    return error->isEmpty();
}

enum ExitCode { Good = 0, Failed = 1, BadArguments = 2 };

int complain(const QString& text, ExitCode code)
{
    std::fprintf(stderr, "wheelgen: %s\n", qUtf8Printable(text));
    return code;
}

int writeSet(const Options& options)
{
    QString error;
    if (!WheelSet::write(options.out, options.set, &error))
        return complain(error, Failed);
    std::printf("%s: %d wheels\n", qUtf8Printable(options.out), options.set.count);
    return Good;
}

int makeDemo(const Options& options)
{
    QString error;
    QStringList made;
    if (!DemoHome::make(options.demo, &made, &error))
        return complain(error, Failed);
    const QString what =
        made.isEmpty() ? QStringLiteral("is there") : QStringLiteral("made ") + made.join(QStringLiteral(", "));
    std::printf("%s: %s\n", qUtf8Printable(options.demo.home), qUtf8Printable(what));
    return Good;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (Printing::version("wheelgen"))
        return Good;
    cv::setNumThreads(1); // each wheel is one job; --jobs says how many run at once
    Options options;
    QString error;
    if (!parseOptions(QCoreApplication::arguments().mid(1), &options, &error))
        return complain(error, BadArguments);
    if (options.task == Options::Set)
        return writeSet(options);
    if (options.task == Options::Demo)
        return makeDemo(options);
    std::printf("%s", qUtf8Printable(usage()));
    return Good;
}
