// The host process: loads the program's library, shows it, and takes it down when the window closes or the process is
// asked to end.

#include "platform/System.h"

#include <valvecell/HomeFiles.h>
#include <valvecell/IMainWidget.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QEvent>
#include <QLibrary>
#include <QLockFile>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
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
    IMainWidget* program = create();
    program->showMaximized();
    const int code = QApplication::exec();
    if (!screenshot.isEmpty())
        saveScreenshot(screenshot);
    destroy(program);
    return code;
}

/// Takes the home for this process; false while another has it. The lock of a process that is no more does not count,
/// nor does a file that a power failure kept from becoming one.
bool takeHome(QLockFile& lock, const QString& path)
{
    if (HomeFiles::isNoFile(path))
        HomeFiles::keepAside(path);
    lock.setStaleLockTime(0); // a day in production is none
    if (lock.tryLock())
        return true;
    if (lock.error() != QLockFile::LockFailedError)
        return true; // a home that cannot be written has worse problems, which are reported where they matter
    constexpr int secondsToWriteIt = 5;
    const QFileInfo file(path);
    const bool unfinished =
        file.size() == 0 && file.lastModified().secsTo(QDateTime::currentDateTime()) > secondsToWriteIt;
    return unfinished && lock.removeStaleLockFile() && lock.tryLock();
}

/// On the error stream, and for a while on the screen: who starts the program by its icon sees no stream.
void reportHomeInUse(const QLockFile& lock)
{
    qint64 process = 0;
    QString host;
    QString name;
    lock.getLockInfo(&process, &host, &name);
    const QString home = QDir::toNativeSeparators(HomeFiles::home());
    std::fprintf(stderr, "%s: in use by another %s, process %lld on %s\n", qUtf8Printable(home), qUtf8Printable(name),
                 static_cast<long long>(process), qUtf8Printable(host));
    QMessageBox box(
        QMessageBox::Warning, QStringLiteral("ValveCell"),
        QStringLiteral("程序已在运行（进程%1），正在使用文件夹%2。\nThe program is running already (process %1), "
                       "in %2.")
            .arg(process)
            .arg(home));
    constexpr int msOnTheScreen = 10000;
    QTimer::singleShot(msOnTheScreen, &box, &QDialog::accept);
    box.exec();
}

int runInHome(const QString& screenshot)
{
    const QString path = HomeFiles::home() + QStringLiteral("/valvecell.lock");
    QLockFile lock(path);
    if (takeHome(lock, path))
        return runProgram(screenshot);
    reportHomeInUse(lock);
    return homeInUse;
}

/// What is only printed needs no screen; on Windows the parser shows it in a box where there is no console.
bool wantsPrint(int argc, char** argv)
{
    return std::any_of(argv + 1, argv + argc, [](const char* argument) {
        const std::initializer_list<const char*> printing{"-h", "-?", "--help", "--help-all", "-v", "--version"};
        return std::any_of(printing.begin(), printing.end(),
                           [argument](const char* option) { return std::strcmp(argument, option) == 0; });
    });
}

} // namespace

int main(int argc, char** argv)
{
    QElapsedTimer start;
    start.start();
    platform::keepForeignLibrariesOut();
    QCoreApplication::setApplicationName(QStringLiteral("ValveCell"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VALVECELL_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Locates the valve hole on wheel hubs at two stations."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("The directory of all files."), "DIR");
    const QCommandLineOption shot(QStringLiteral("screenshot"),
                                  QStringLiteral("Writes the window's picture at the end."), "FILE.png");
    parser.addOptions({home, shot});
    if (wantsPrint(argc, argv)) {
        const QCoreApplication app(argc, argv);
        parser.process(app);
    }
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    HostApplication app(argc, argv, start);
    parser.process(app);
    const QString screenshot = parser.isSet(shot) ? QFileInfo(parser.value(shot)).absoluteFilePath() : QString();
    return enterHome(parser.value(home)) ? runInHome(screenshot) : noHome;
}
