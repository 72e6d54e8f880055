// The PLC of a cell, simulated: see --help.

#include "Console.h"
#include "CutSession.h"
#include "PartSession.h"
#include "PlcFrames.h"
#include "PlcLine.h"
#include "Printing.h"
#include "ScriptRunner.h"
#include "SimOptions.h"
#include "platform/StandardInput.h"

#include <valvecell/HomeFiles.h>

#include <QCoreApplication>
#include <QTime>

#include <csignal>

namespace {

/// Exit code: wrong options, or nothing to talk to; 0 and 1 say how a run ended.
constexpr int exitCannotBegin = 2;

volatile std::sig_atomic_t endRequested = 0;

/// Calls `stop` soon after SIGTERM or SIGINT. The one portable thing that a handler may do is to set a flag, so a timer
/// looks for it.
template <typename Stop>
void stopOnSignal(QTimer& poll, Stop stop)
{
    for (const int signal : {SIGTERM, SIGINT})
        std::signal(signal, [](int) { endRequested = 1; });
    QObject::connect(&poll, &QTimer::timeout, &poll, [stop] {
        if (std::exchange(endRequested, 0))
            stop();
    });
    poll.start(100);
}

int cannotBegin(const QString& error)
{
    Console::complain(error);
    return exitCannotBegin;
}

void print(const QString& text)
{
    Console::say(QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz ")) + text);
}

/// Prints what passes over the line, with time and direction: ">" to the program, "<" from it.
void printFrames(PlcLine& line, bool withHeartbeat)
{
    QObject::connect(&line, &PlcLine::frameReceived, &line, [withHeartbeat](const SComFrame& frame) {
        if (withHeartbeat || frame.command != PlcFrames::heartbeat)
            print(QStringLiteral("< ") + PlcFrames::text(frame));
    });
    QObject::connect(&line, &PlcLine::frameSent, &line,
                     [](const SComFrame& frame) { print(QStringLiteral("> ") + PlcFrames::text(frame)); });
    QObject::connect(&line, &PlcLine::bytesSent, &line, [](const QByteArray& bytes) {
        print(QStringLiteral("> %1 bytes: %2").arg(bytes.size()).arg(QString::fromLatin1(bytes.left(48).toHex(' '))));
    });
    QObject::connect(&line, &PlcLine::pulled, &line, [] { print(QStringLiteral("- cable pulled")); });
    QObject::connect(&line, &PlcLine::pluggedIn, &line, [] { print(QStringLiteral("- cable back")); });
}

/// Endless feeding ends with the standard input when somebody holds its other end.
int feedParts(PlcLine& line, const SimOptions& options)
{
    PartSession session(line, options);
    QObject::connect(&session, &PartSession::finished, &QCoreApplication::exit);
    QTimer poll;
    stopOnSignal(poll, [&session] { session.stop(); });
    std::unique_ptr<platform::StandardInput> input;
    if (options.parts == 0 && platform::StandardInput::isPipe()) {
        input = std::make_unique<platform::StandardInput>();
        QObject::connect(input.get(), &platform::StandardInput::closed, &session, &PartSession::stop);
    }
    QString error;
    return session.start(&error) ? QCoreApplication::exec() : cannotBegin(error);
}

int cutLine(PlcLine& line, const SimOptions& options)
{
    CutSession session(line, options);
    QObject::connect(&session, &CutSession::finished, &QCoreApplication::exit);
    QTimer poll;
    stopOnSignal(poll, [&session] { session.stop(); });
    QString error;
    return session.start(&error) ? QCoreApplication::exec() : cannotBegin(error);
}

bool openLine(PlcLine& line, const SimOptions& options, QString* error)
{
    if (!options.link.isEmpty())
        return line.openLink(options.link, error);
    return options.listen.isEmpty() ? line.openPort(options.port, options.baudRate, error)
                                    : line.listen(options.listen, error);
}

bool announce(const PlcLine& line, const SimOptions& options, QString* error)
{
    if (!options.listen.isEmpty())
        Console::say(QStringLiteral("listening as ") + line.name());
    return options.nameFile.isEmpty() || HomeFiles::writeFile(options.nameFile, line.name().toUtf8(), error);
}

int runCommands(PlcLine& line, const SimOptions& options)
{
    ScriptSession session(line);
    QObject::connect(&session, &ScriptSession::finished, &QCoreApplication::exit);
    QTimer poll;
    stopOnSignal(poll, [] { QCoreApplication::exit(0); });
    QString error;
    if (options.script.isEmpty())
        session.runInput();
    else if (!session.runFile(options.script, &error))
        return cannotBegin(error);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (Printing::version("plcsim"))
        return 0;
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.contains(QStringLiteral("--help"))) {
        Console::say(SimOptions::help());
        return 0;
    }
    SimOptions options;
    QString error;
    if (!options.parse(arguments, &error))
        return cannotBegin(error);
    PlcLine line;
    const bool interactive = !options.parts && !options.cuts && options.script.isEmpty();
    if (options.verbose || interactive)
        printFrames(line, options.verbose);
    if (!openLine(line, options, &error) || !announce(line, options, &error))
        return cannotBegin(error);
    if (options.cuts)
        return cutLine(line, options);
    return options.parts ? feedParts(line, options) : runCommands(line, options);
}
