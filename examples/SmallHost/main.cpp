// A host that lives on when the program cannot start, and tells why. With a second argument "--once" it ends as soon as
// the window was shown.

#include <valvecell/HomeFiles.h>
#include <valvecell/HostChoice.h>
#include <valvecell/IMainWidget.h>

#include <QApplication>
#include <QLibrary>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QLibrary library(QApplication::arguments().value(1, QStringLiteral("/usr/lib/valvecell/libvalvecell.so")));
    const auto create = reinterpret_cast<MainWidgetCreateFunction>(library.resolve("MainWidget_Create"));
    const auto destroy = reinterpret_cast<MainWidgetDeleteFunction>(library.resolve("MainWidget_Delete"));
    if (!create || !destroy) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(library.errorString()));
        return 1;
    }
    QDir::setCurrent(HomeFiles::home()); // the system log is opened there
    HostChoice::returnFailures();
    IMainWidget* const program = create();
    if (!program) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(HostChoice::startProblem()));
        return 2;
    }
    program->showMaximized();
    if (QApplication::arguments().contains(QStringLiteral("--once")))
        QTimer::singleShot(0, &app, &QApplication::quit);
    const int code = QApplication::exec();
    destroy(program);
    return code;
}
