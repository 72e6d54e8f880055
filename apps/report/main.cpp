// The report program: shows what a cell recorded, beside the cell or on a copy of its home, and never writes the
// cell's own files.

#include "Printing.h"
#include "ReportWindow.h"
#include "Resources.h"
#include "look/LanguageSwitch.h"
#include "look/WindowLook.h"
#include "platform/System.h"
#include "results/ResultsView.h"

#include <valvecell/HomeFiles.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QSettings>
#include <QTimer>

namespace {

/// Read beside the cell, which alone keeps its settings.
QString languageOf(const QString& home)
{
    QSettings settings(home + QStringLiteral("/user/systemConfig.ini"), QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    return settings.value(QStringLiteral("language/select"), QStringLiteral("Chinese")).toString();
}

} // namespace

int main(int argc, char** argv)
{
    platform::keepForeignLibrariesOut();
    QCoreApplication::setApplicationName(QStringLiteral("Report"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VALVECELL_VERSION));
    platform::scaleForScreens();
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows the results that a ValveCell recorded.\n"
                                                    "Exit code: 0 closed; 1 wrong arguments."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("The directory of all files of the cell."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption shot(QStringLiteral("screenshot"),
                                  QStringLiteral("Writes the window's picture once it has read, and ends."),
                                  QStringLiteral("FILE.png"));
    parser.addOptions({home, shot});
    if (Printing::isAsked(argc, argv)) {
        const QCoreApplication app(argc, argv);
        parser.process(app);
    }
    const QApplication app(argc, argv);
    parser.process(app);
    if (parser.isSet(home))
        HomeFiles::setHome(parser.value(home));
    HomeFiles::fixHome();

    initResources();
    LanguageSwitch language;
    language.apply(languageOf(HomeFiles::home()));
    ReportWindow window;
    window.setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    (new WindowLook(&window))->load();
    window.openHome(HomeFiles::home());
    window.show();
    if (parser.isSet(shot)) {
        constexpr int msToRead = 2000;
        QTimer::singleShot(msToRead, &window, [&] {
            window.grab().save(parser.value(shot));
            QCoreApplication::quit();
        });
    }
    return QApplication::exec();
}
