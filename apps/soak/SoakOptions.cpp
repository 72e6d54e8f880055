#include "SoakOptions.h"

#include "Faults.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

constexpr double burstSeconds = 60;

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(
        "Runs the real program in production, lets things go wrong by a seed, and holds what the PLC knows against "
        "what "
        "was recorded. Exit code 0: each trigger was answered once or lay in a gap, each answer has one row of the "
        "same "
        "values, each row's picture was there, nothing was damaged. Faults: kill, cut (the line), camera (its "
        "images go, or it leaves the network), disk (no file can grow), lock (another program writes in the "
        "databases), load (busy processors), archive "
        "(a file in the place of the folder). The clock is never touched.");
    parser.addOptions({{"help", "Shows this text."},
                       {"hours", "Production for so long.", "H"},
                       {"kills", "Kills the program N times, as soon as it is ready again.", "N"},
                       {"burst", "Ten times the rate, for a minute or the hours, whether answered or not."},
                       {"seed", "Decides which faults come when.", "S", "1"},
                       {"rate", "Parts a second, of both stations together.", "PARTS", "4"},
                       {"cameras", "virtual, or gige: simulated network cameras.", "KIND", "virtual"},
                       {"faults", "Which may come, by commas; \"none\".", "LIST", Faults::names().join(',')},
                       {"pictures", "Archived are \"all\" or \"none\"; all, unless in a burst.", "WHICH"},
                       {"home", "A home that is kept, instead of a temporary one.", "DIR"},
                       {"json", "Writes the report there.", "FILE"},
                       {"programs", "Where the programs are, if not here.", "DIR"},
                       {"spoil", "Deletes a row before the balance, which then must not be zero."}});
}

/// Reads options one after another; the first that is wrong counts.
class Reader
{
public:
    Reader(const QCommandLineParser& parser, QString* error)
        : m_parser(parser)
        , m_error(error)
    {
    }

    QString text(const char* name) const { return m_parser.value(QLatin1String(name)); }
    bool isSet(const char* name) const { return m_parser.isSet(QLatin1String(name)); }
    void require(bool good, const QString& complaint)
    {
        if (!good && m_error->isEmpty())
            *m_error = complaint;
    }
    double number(const char* name, double low, double high)
    {
        bool good = false;
        const double value = text(name).toDouble(&good);
        require(good && value >= low && value <= high, QStringLiteral("--%1 %2: a number from %3 to %4 is needed")
                                                           .arg(QLatin1String(name), text(name))
                                                           .arg(low)
                                                           .arg(high));
        return value;
    }
    QStringList faults()
    {
        if (text("faults") == QLatin1String("none"))
            return {};
        const QStringList list = text("faults").split(QLatin1Char(','), Qt::SkipEmptyParts);
        for (const QString& name : list)
            require(Faults::names().contains(name),
                    QStringLiteral("--faults: what is %1? Known: %2").arg(name, Faults::names().join(", ")));
        return list;
    }

private:
    const QCommandLineParser& m_parser;
    QString* const m_error;
};

} // namespace

bool SoakOptions::parse(const QStringList& arguments, QString* error)
{
    QCommandLineParser parser;
    describe(parser);
    error->clear();
    if (!parser.parse(QStringList{QStringLiteral("soak")} + arguments)) {
        *error = parser.errorText();
        return false;
    }
    Reader read(parser, error);
    read.require(parser.positionalArguments().isEmpty(),
                 QStringLiteral("what is %1?").arg(parser.positionalArguments().join(' ')));
    read.require(read.isSet("hours") || read.isSet("kills") || read.isSet("burst"),
                 QStringLiteral("one of --hours, --kills and --burst is needed"));
    networkCameras = read.text("cameras") == QLatin1String("gige");
    read.require(networkCameras || read.text("cameras") == QLatin1String("virtual"),
                 QStringLiteral("--cameras %1: virtual or gige").arg(read.text("cameras")));
    burst = read.isSet("burst");
    hours = read.isSet("hours") ? read.number("hours", 0, 10000) : burst ? burstSeconds / 3600 : 0;
    kills = read.isSet("kills") ? static_cast<int>(read.number("kills", 1, 1e6)) : 0;
    seed = static_cast<quint64>(read.number("seed", 0, 1e15));
    rate = read.number("rate", 0.01, 1000);
    faults = kills > 0 || burst ? QStringList() : read.faults();
    const QString which = read.isSet("pictures") ? read.text("pictures") : QString::fromLatin1(burst ? "none" : "all");
    read.require(which == QLatin1String("all") || which == QLatin1String("none"),
                 QStringLiteral("--pictures %1: all or none").arg(which));
    pictures = which == QLatin1String("all");
    home = read.text("home");
    json = read.text("json");
    programs = read.isSet("programs") ? read.text("programs") : QCoreApplication::applicationDirPath();
    spoil = read.isSet("spoil");
    return error->isEmpty();
}

QString SoakOptions::help()
{
    QCommandLineParser parser;
    describe(parser);
    return parser.helpText();
}

QString SoakOptions::mode() const
{
    return kills > 0 ? QStringLiteral("kills") : burst ? QStringLiteral("burst") : QStringLiteral("hours");
}
