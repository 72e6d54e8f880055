// Simulated cells that publish to a broker: see --help.

#include "Printing.h"
#include "SimCell.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QTimer>

#include <csignal>
#include <memory>
#include <vector>

namespace {

enum ExitCode { Good = 0, CannotBegin = 2 };
constexpr int stepMs = 100;

volatile std::sig_atomic_t endRequested = 0;
volatile std::sig_atomic_t pauseRequested = 0;

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription("Cells without cameras: they record parts in an SQLite file and publish them to a "
                                     "broker, as real cells do. A killed program goes on where it was. SIGUSR1 ends "
                                     "the production; what is recorded is still published.");
    parser.addOptions(
        {{"help", "Shows this text."},
         {"version", "Shows the version."},
         {"cells", "How many.", "N", "10"},
         {"first", "Number of the first.", "N", "1"},
         {"rate", "Parts a second of each.", "PARTS", "2"},
         {"file", "What they record.", "FILE", "cells.db"},
         {"host", "The broker.", "HOST", "127.0.0.1"},
         {"port", "Its port.", "PORT", "1883"},
         {"group", "The plant.", "NAME", "plant"},
         {"no-pictures", "Parts come without pictures."},
         {"balance", "Prints what is recorded in the file, a line a cell and stream, and does nothing else."}});
}

SimCell::Options optionsOf(const QCommandLineParser& parser)
{
    SimCell::Options options;
    options.broker.host = parser.value("host");
    options.broker.port = parser.value("port").toUShort();
    options.group = parser.value("group");
    options.rate = qBound(0.001, parser.value("rate").toDouble(), 1000.0);
    options.pictures = !parser.isSet("no-pictures");
    return options;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (Printing::version("plantsim"))
        return Good;
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(QCoreApplication::arguments())) {
        std::fprintf(stderr, "plantsim: %s\n", qUtf8Printable(parser.errorText()));
        return CannotBegin;
    }
    if (parser.isSet("help"))
        parser.showHelp();
    for (const int signal : {SIGTERM, SIGINT})
        std::signal(signal, [](int) { endRequested = 1; });
    std::signal(SIGUSR1, [](int) { pauseRequested = 1; });
    SimStore store(parser.value("file"));
    if (parser.isSet("balance")) {
        const QStringList lines = store.balance();
        for (const QString& line : lines)
            std::puts(qUtf8Printable(line));
        return Good;
    }
    std::vector<std::unique_ptr<SimCell>> cells;
    for (int i = 0; i < parser.value("cells").toInt(); ++i) {
        cells.push_back(std::make_unique<SimCell>(parser.value("first").toInt() + i, optionsOf(parser), store));
        cells.back()->begin();
    }
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &app, [&] {
        for (const auto& cell : cells)
            cell->step(QDateTime::currentMSecsSinceEpoch(), !pauseRequested);
        store.commit();
        if (endRequested)
            QCoreApplication::quit();
    });
    timer.start(stepMs);
    QCoreApplication::exec();
    store.commit();
    for (const auto& cell : cells)
        cell->stop();
    return Good;
}
