#include "SetOptions.h"

#include <QCommandLineParser>

namespace {

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
