// The host process: loads the program's library, shows it, and takes it down when the window closes or the process is
// asked to end.

#include "LoopWatch.h"

#include <valvecell/HomeFiles.h>
#include <valvecell/IMainWidget.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QLibrary>
#include <QTimer>
#include <QWidget>

#include <csignal>
#include <cstdio>

namespace {

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
        qputenv("VALVECELL_HOME", QDir(home).absolutePath().toUtf8());
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
    IMainWidget* program = create();
    program->showMaximized();
    const int code = QApplication::exec();
    if (!screenshot.isEmpty())
        saveScreenshot(screenshot);
    destroy(program);
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    QElapsedTimer start;
    start.start();
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("ValveCell"));
    const LoopWatch watch(start);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Locates the valve hole on wheel hubs at two stations."));
    parser.addHelpOption();
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("The directory of all files."), "DIR");
    const QCommandLineOption shot(QStringLiteral("screenshot"),
                                  QStringLiteral("Writes the window's picture at the end."), "FILE.png");
    parser.addOptions({home, shot});
    parser.process(app);
    const QString screenshot = parser.isSet(shot) ? QFileInfo(parser.value(shot)).absoluteFilePath() : QString();
    return enterHome(parser.value(home)) ? runProgram(screenshot) : 2;
}
