#include "SimOptions.h"

#include <QCommandLineParser>

namespace {

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription("The PLC of a cell, simulated. With --parts it feeds parts and reports how the "
                                     "program answered, with --cuts it "
                                     "cuts the line and reports how the program came back, with --script it runs a "
                                     "script, otherwise it takes the same commands from its standard input:\n"
                                     "  C I1 I2      model indices of stations 1 and 2\n"
                                     "  P STATION    trigger\n"
                                     "  shutdown     the frame that closes the program\n"
                                     "  send CMD W.. any frame, for example: send 0x51 1 2 3\n"
                                     "  wait CMD MS  a frame of that kind has to come within MS milliseconds\n"
                                     "  none CMD MS  no frame of that kind may come within MS milliseconds\n"
                                     "  raw HEX      bytes as they are\n"
                                     "  garbage N    N random bytes\n"
                                     "  pull MS      the cable is pulled for MS milliseconds\n"
                                     "  sleep MS     a pause\n"
                                     "  repeat [N]   everything above again, N times in all; without N endlessly\n"
                                     "Exit code: 0 all was answered as it should be; 1 something was not; 2 wrong "
                                     "options, or there is nothing to talk to.\n"
                                     "JSON of --parts: parts, replies, found, wrong; angle_error_deg and "
                                     "center_error_px with p50, p95, max; latency_ms with p50, p99, max; rows, one a "
                                     "part.");
    parser.addOptions({{"help", "Shows this text."},
                       {"version", "Shows the version."},
                       {"link", "Makes a pseudo-terminal, and PATH a link to it.", "PATH"},
                       {"port", "Uses a real port.", "NAME"},
                       {"listen", "Is a serial device server at ADDRESS:PORT; port 0 for any.", "PLACE"},
                       {"name-file", "Writes the port to which the program has to be set there.", "FILE"},
                       {"baud", "Baud rate of the port.", "RATE", "115200"},
                       {"verbose", "Prints every frame."},
                       {"script", "Runs the commands of a file.", "FILE"},
                       {"parts", "Feeds N parts; 0 feeds until the standard input ends or SIGTERM comes.", "N"},
                       {"cuts", "Cuts the line N times at random moments, with triggers on it.", "N"},
                       {"away", "So long is a cut line away at most.", "MS", "1500"},
                       {"seed", "Which random moments.", "N", "1"},
                       {"pid-file", "File with the program's process id, to see what it costs while cut off.", "FILE"},
                       {"truth1", "Folder of the images of station 1, with truth.json.", "DIR"},
                       {"truth2", "Folder of the images of station 2, with truth.json.", "DIR"},
                       {"home", "The program's home, whose calibration turns X and Y back into pixels.", "DIR"},
                       {"road", "File with the program's timing lines.", "FILE"},
                       {"json", "Writes the report there.", "FILE"},
                       {"camera-delay", "Exposure and transfer time of the cameras.", "MS", "0"},
                       {"interval", "At least so long from part to part.", "MS", "0"},
                       {"timeout", "So long may an answer take.", "MS", "5000"},
                       {"start-timeout", "So long may the program take to send its first heartbeat.", "MS", "60000"},
                       {"filter", "The program's filter time for triggers of one station.", "MS", "0"},
                       {"refused", "After the parts, N triggers with an index that no table has.", "N", "0"}});
}

bool isSet(const QCommandLineParser& parser, const char* name)
{
    return parser.isSet(QLatin1String(name));
}

bool readNumber(const QCommandLineParser& parser, const char* name, int* value, QString* error)
{
    bool good = false;
    const QString text = parser.value(QLatin1String(name));
    *value = text.toInt(&good);
    if (good && *value >= 0)
        return true;
    *error = QStringLiteral("--%1 %2: not a number").arg(QLatin1String(name), text);
    return false;
}

bool readNumbers(const QCommandLineParser& parser, SimOptions* options, QString* error)
{
    const std::pair<const char*, std::optional<int>*> counts[] = {{"parts", &options->parts}, {"cuts", &options->cuts}};
    for (const auto& [name, value] : counts)
        if (isSet(parser, name) && !readNumber(parser, name, &value->emplace(), error))
            return false;
    const std::pair<const char*, int*> numbers[] = {
        {"baud", &options->baudRate},     {"interval", &options->intervalMs},
        {"timeout", &options->timeoutMs}, {"start-timeout", &options->startTimeoutMs},
        {"filter", &options->filterMs},   {"refused", &options->refused},
        {"seed", &options->seed},         {"away", &options->awayMs}};
    for (const auto& [name, value] : numbers)
        if (!readNumber(parser, name, value, error))
            return false;
    bool good = false;
    options->cameraDelayMs = parser.value(QStringLiteral("camera-delay")).toDouble(&good);
    if (!good)
        *error = QStringLiteral("--camera-delay: not a number");
    return good;
}

} // namespace

bool SimOptions::parse(const QStringList& arguments, QString* error)
{
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(QStringList{QStringLiteral("plcsim")} + arguments) || !parser.positionalArguments().isEmpty()) {
        *error = parser.errorText().isEmpty()
                     ? QStringLiteral("what is %1?").arg(parser.positionalArguments().join(' '))
                     : parser.errorText();
        return false;
    }
    if (isSet(parser, "link") + isSet(parser, "port") + isSet(parser, "listen") != 1)
        *error = QStringLiteral("one of --link, --port and --listen is needed");
    else if (isSet(parser, "script") + isSet(parser, "parts") + isSet(parser, "cuts") > 1)
        *error = QStringLiteral("only one of --script, --parts and --cuts");
    else
        error->clear();
    verbose = isSet(parser, "verbose");
    const std::pair<const char*, QString*> texts[] = {
        {"link", &link},     {"port", &port},       {"listen", &listen},   {"name-file", &nameFile},
        {"script", &script}, {"truth1", &truth[0]}, {"truth2", &truth[1]}, {"home", &home},
        {"road", &road},     {"json", &json},       {"pid-file", &pidFile}};
    for (const auto& [name, value] : texts)
        *value = parser.value(QLatin1String(name));
    return error->isEmpty() && readNumbers(parser, this, error);
}

QString SimOptions::help()
{
    QCommandLineParser parser;
    describe(parser);
    return parser.helpText();
}
