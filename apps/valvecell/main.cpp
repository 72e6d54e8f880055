// The host process: loads the program's library, shows it, and takes it down when the window closes or the process is
// asked to end.

#include "Printing.h"
#include "home/HomeLock.h"
#include "home/HomeVersion.h"
#include "platform/ServiceNotice.h"
#include "platform/System.h"

#include <valvecell/HomeFiles.h>
#include <valvecell/HostChoice.h>
#include <valvecell/IMainWidget.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QEvent>
#include <QLibrary>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QTimer>
#include <QWidget>

#include <csignal>
#include <cstdio>
#include <exception>

namespace {
Q_LOGGING_CATEGORY(loop, "valvecell.loop", QtWarningMsg)

/// What escapes from an event ends with it: a module that throws where nothing guards its call costs one click, and not
/// the production. Also measures how long from the process's start until the window was first drawn, for the debug line
/// "window_ms=812.3" of the logging category.
class HostApplication : public QApplication
{
public:
    HostApplication(int& argc, char** argv, const QElapsedTimer& start)
        : QApplication(argc, argv)
        , m_start(start)
    {
    }

    bool notify(QObject* receiver, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !m_shown && receiver->inherits("QMainWindow")) {
            m_shown = true;
            qCDebug(loop, "window_ms=%.1f", static_cast<double>(m_start.nsecsElapsed()) / 1e6);
        }
        const char* const kind = receiver->metaObject()->className();
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& thrown) {
            qCritical("an event of %s threw: %s", kind, thrown.what());
        } catch (...) {
            qCritical("an event of %s threw", kind);
        }
        return true;
    }

private:
    const QElapsedTimer m_start;
    bool m_shown = false;
};

constexpr int noHome = 2;
constexpr int homeInUse = 3;
constexpr int notStarted = 4;
constexpr int newerHome = 5;

const char description[] =
    R"(Locates the valve hole on wheel hubs at two stations.

Its files lie in the home: the folder of the program, or ~/.local/share/valvecell when it was installed from packages;
--home, --cell or the environment variable VALVECELL_HOME names another.

Exit code: 0 closed, or a box said why the start failed; 1 the program's library cannot be loaded, or wrong arguments;
2 no such home; 3 the home is in use; 4 the start failed, 5 a newer program used the home: both
with --unattended, else a box says so.)";

volatile std::sig_atomic_t endRequested = 0;

/// Ends the event loop soon after SIGTERM or SIGINT; the one portable thing that a handler may do is to set a flag.
void quitOnSignal(QTimer& poll)
{
    for (const int signal : {SIGTERM, SIGINT})
        std::signal(signal, [](int) { endRequested = 1; });
    QObject::connect(&poll, &QTimer::timeout, qApp, [] {
        if (endRequested)
            QCoreApplication::quit();
    });
    poll.start(100);
}

/// The main window alone; dialogs and message boxes are top-level, too.
void saveScreenshot(const QString& path)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window->inherits("QMainWindow") && !window->grab().save(path))
            std::fprintf(stderr, "%s: cannot be written\n", qUtf8Printable(path));
    }
}

/// Makes `home` the home and the working directory; false with a message when it is no directory.
bool enterHome(const QString& home)
{
    if (!home.isEmpty())
        HomeFiles::setHome(home);
    HomeFiles::fixHome();
    if (QDir(HomeFiles::home()).exists() && QDir::setCurrent(HomeFiles::home()))
        return true;
    std::fprintf(stderr, "%s: no such directory\n", qUtf8Printable(HomeFiles::home()));
    return false;
}

int runProgram(const QString& screenshot)
{
    QLibrary library(QCoreApplication::applicationDirPath() + QStringLiteral("/" VALVECELL_LIBRARY));
    const auto create = reinterpret_cast<MainWidgetCreateFunction>(library.resolve("MainWidget_Create"));
    const auto destroy = reinterpret_cast<MainWidgetDeleteFunction>(library.resolve("MainWidget_Delete"));
    if (!create || !destroy) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(library.errorString()));
        return 1;
    }
    QTimer poll;
    quitOnSignal(poll);
    platform::ServiceNotice service;
    IMainWidget* const program = create();
    if (!program) {
        service.status(HostChoice::startProblem());
        return notStarted;
    }
    program->showMaximized();
    service.ready();
    const int code = QApplication::exec();
    service.stopping();
    if (!screenshot.isEmpty())
        saveScreenshot(screenshot);
    destroy(program);
    return code;
}

/// On the error stream, and for a while on the screen: who starts the program by its icon sees no stream.
void reportInUse(const HomeLock::Owner& owner)
{
    const QString home = QDir::toNativeSeparators(HomeFiles::home());
    std::fprintf(stderr, "%s: in use by another %s, process %lld on %s\n", qUtf8Printable(home),
                 qUtf8Printable(owner.program), static_cast<long long>(owner.process), qUtf8Printable(owner.machine));
    if (HostChoice::isUnattended())
        return;
    QMessageBox box(
        QMessageBox::Warning, QStringLiteral("ValveCell"),
        QStringLiteral("程序已在运行（进程%1），正在使用文件夹%2。\nThe program is running already (process "
                       "%1), in %2.")
            .arg(owner.process)
            .arg(home));
    constexpr int msOnTheScreen = 10000;
    QTimer::singleShot(msOnTheScreen, &box, &QDialog::accept);
    box.exec();
}

/// A newer home is left alone before the lock is written; with a person there, the library says so in a box.
int runInHome(const QString& screenshot)
{
    if (HostChoice::isUnattended() && HomeVersion::of(HomeFiles::home()) > HomeVersion::current) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(HomeVersion::newerText(HomeFiles::home())));
        return newerHome;
    }
    HomeLock lock(HomeFiles::home());
    if (lock.take())
        return runProgram(screenshot);
    reportInUse(lock.owner());
    return homeInUse;
}

} // namespace

int main(int argc, char** argv)
{
    QElapsedTimer start;
    start.start();
    platform::keepForeignLibrariesOut();
    platform::keepMemoryTight();
    QCoreApplication::setApplicationName(QStringLiteral("ValveCell"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VALVECELL_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(description));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("The directory of all files."), "DIR");
    const QCommandLineOption shot(QStringLiteral("screenshot"),
                                  QStringLiteral("Writes the window's picture at the end."), "FILE.png");
    const QCommandLineOption cell(QStringLiteral("cell"),
                                  QStringLiteral("The directory of that name below /var/lib/valvecell."), "NAME");
    const QCommandLineOption unattended(QStringLiteral("unattended"),
                                        QStringLiteral("Nobody sits there: no box asks, a failure ends the program."));
    parser.addOptions({home, cell, unattended, shot});
    if (Printing::isAsked(argc, argv)) {
        const QCoreApplication app(argc, argv);
        parser.process(app);
    }
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    HostApplication app(argc, argv, start);
    parser.process(app);
    const QString screenshot = parser.isSet(shot) ? QFileInfo(parser.value(shot)).absoluteFilePath() : QString();
    HostChoice::setUnattended(parser.isSet(unattended));
    HostChoice::returnFailures(parser.isSet(unattended));
    const QString place =
        parser.isSet(cell) ? QStringLiteral("/var/lib/valvecell/") + parser.value(cell) : parser.value(home);
    return enterHome(place) ? runInHome(screenshot) : noHome;
}
