#include "Shrinker.h"
#include "platform/System.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>

using namespace Simulation;

namespace {

/// What the cell says on its debug stream is shown for one seed only.
bool s_quiet = true;

void show(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (!s_quiet || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

void report(const Plan& plan, const World::Outcome& outcome, bool shrinks, const QString& folder)
{
    std::printf("seed %llu, step %d: %s\n", plan.seed, outcome.step + 1, qPrintable(outcome.broken));
    if (!shrinks)
        return;
    const Plan shortest = shrunken(plan, folder);
    const World::Outcome again = runPlan(shortest, folder);
    std::printf("the shortest run that shows it: %s\n%s\n", qPrintable(again.broken),
                qPrintable(shortest.text().join(QLatin1Char('\n'))));
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("TZ", "UTC");
    qSetGlobalQHashSeed(0);
    QCoreApplication app(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions({{"seeds", "How many runs.", "number", "200"},
                        {"from", "The first one's seed.", "seed", "1"},
                        {"steps", "The steps of a run.", "number", "500"},
                        {"no-shrink", "Only name the seeds that fail."},
                        {"verbose", "Print what the cell says, and the steps of each run."}});
    options.process(app);
    const int seeds = options.value("seeds").toInt();
    const quint64 from = options.value("from").toULongLong();
    const int steps = options.value("steps").toInt();
    s_quiet = !options.isSet("verbose");
    qInstallMessageHandler(show);

    const QTemporaryDir base;
    const QString folder = base.filePath(QStringLiteral("工厂"));
    qputenv("VALVECELL_HOME", folder.toUtf8());
    QElapsedTimer clock;
    clock.start();
    qint64 triggers = 0, ms = 0, memory = 0;
    int failed = 0;
    for (int i = 0; i < seeds && failed < 5; ++i) {
        const Plan plan = Plan::of(from + quint64(i), steps);
        if (!s_quiet)
            std::printf("%s\n", qPrintable(plan.text().join(QLatin1Char('\n'))));
        const World::Outcome outcome = runPlan(plan, folder);
        triggers += outcome.triggers;
        ms += outcome.ms;
        if (i == seeds / 10)
            memory = platform::residentMemoryKiB();
        if (outcome.broken.isEmpty())
            continue;
        ++failed;
        report(plan, outcome, !options.isSet("no-shrink"), folder);
        std::fflush(stdout);
    }
    const qint64 grown = platform::residentMemoryKiB() - memory;
#ifdef __SANITIZE_ADDRESS__
    constexpr qint64 mostGrown = 1024 * 1024; // it keeps what was freed for a while
#else
    constexpr qint64 mostGrown = 64 * 1024;
#endif
    if (failed == 0 && grown > mostGrown) {
        std::printf("the process has grown by %lld KiB\n", grown);
        failed = 1;
    }
    std::printf("%d seeds, %lld triggers, %.1f hours of production in %.1f s, %lld KiB grown: %s\n", seeds, triggers,
                ms / 3.6e6, clock.elapsed() / 1e3, grown, failed ? "rules broken" : "every rule held");
    return failed ? 1 : 0;
}
