#include "WindowDriver.h"
#include "look/LanguageSwitch.h"
#include "panels/CellStatusBar.h"
#include "shell/Workspaces.h"

#include <valvecell/HostChoice.h>
#include <valvecell/IMainWidget.h>

#include <QStyle>
#include <QThreadPool>

namespace {

/// A start-up that must end its process; what its box said goes to the standard output.
int fatalChild()
{
    const BoxPresser presser(QMessageBox::Yes, true);
    const CMainWin window;
    return 9; // the start-up went on although it could not
}

/// A host that lets the library go after use, and lives on.
int unloadingChild()
{
    const TempHome home;
    writeStations(home, 1);
    const BoxPresser presser(QMessageBox::Yes);
    QLibrary library(QStringLiteral(VALVECELL_BIN_DIR "/" VALVECELL_LIBRARY));
    const auto create = reinterpret_cast<MainWidgetCreateFunction>(library.resolve("MainWidget_Create"));
    const auto destroy = reinterpret_cast<MainWidgetDeleteFunction>(library.resolve("MainWidget_Delete"));
    destroy(create());
    library.unload();
    QTest::qWait(50);
    return 0;
}

int threadCount()
{
    QThreadPool::globalInstance()->waitForDone();
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

void ownHandler(QtMsgType, const QMessageLogContext&, const QString& text)
{
    std::puts(qUtf8Printable(text));
}

/// What a host has of its own, and finds again after the program; a thread that has ended is listed for a moment.
QString stateOfHost(int threads)
{
    const bool ended = QTest::qWaitFor([=] { return threadCount() == threads; }, patienceMs);
    const QtMessageHandler handler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handler);
    return told(QApplication::style()->objectName(), QApplication::palette().color(QPalette::Window).name(),
                handler == ownHandler, ended, QDir::currentPath(), QApplication::topLevelWidgets().size());
}

/// A host that wants to live on whatever happens: a second program, a start that fails, and all over again.
int livingChild()
{
    const TempHome home;
    writeStations(home, 1);
    home.write("/user/systemConfig.ini", "[COM]\nPort=/nowhere/tty\n");
    qInstallMessageHandler(ownHandler);
    QApplication::setStyle("windows");
    HostChoice::returnFailures();
    HostChoice::setUnattended();
    QLibrary library(QStringLiteral(VALVECELL_BIN_DIR "/" VALVECELL_LIBRARY));
    const auto create = reinterpret_cast<MainWidgetCreateFunction>(library.resolve("MainWidget_Create"));
    const auto destroy = reinterpret_cast<MainWidgetDeleteFunction>(library.resolve("MainWidget_Delete"));
    const int threads = threadCount();
    QStringList states{stateOfHost(threads)};
    for (int round = 0; round < 3; ++round) {
        IMainWidget* const program = create();
        const bool twice = create() != nullptr;
        if (!program || twice || !HostChoice::startProblem().contains("MainWidget_Delete"))
            return 2;
        int closed = 0;
        HostChoice::setClosedNotice([&] { ++closed; });
        program->showMaximized();
        QTest::qWait(20);
        const bool shown = closed == 0;
        for (QWidget* window : QApplication::topLevelWidgets())
            if (shown && window->inherits("QMainWindow"))
                window->close();
        destroy(program);
        if (closed != 1)
            return 5;
        states << stateOfHost(threads);
        QFile::rename(home.path("/user/camera.json"), home.path("/user/away"));
        if (create() || !HostChoice::startProblem().startsWith("camera.json文件出错,请检查!"))
            return 3;
        states << stateOfHost(threads);
        QFile::rename(home.path("/user/away"), home.path("/user/camera.json"));
        if (round == 1)
            library.unload();
    }
    if (states.count(states[0]) == states.size())
        return 0;
    std::puts(qUtf8Printable(states.join('\n')));
    return 4;
}

} // namespace

class HostTest : public QObject
{
    Q_OBJECT

private slots:
    void libraryExportsItsTwoFunctions()
    {
        QLibrary library(QStringLiteral(VALVECELL_BIN_DIR "/" VALVECELL_LIBRARY));
        const auto destroy = reinterpret_cast<MainWidgetDeleteFunction>(library.resolve("MainWidget_Delete"));
        QVERIFY2(library.resolve("MainWidget_Create") && destroy, qPrintable(library.errorString()));
        destroy(nullptr);
    }

    void freshInstallationStartsWithoutItsPort_data() { Table::of<int>({{"one station", 1}, {"two", 2}}); }
    void freshInstallationStartsWithoutItsPort()
    {
        const auto [cameras] = Table::row<int>();
        const TempHome home;
        writeCameras(home, cameras);
        writeSolutions(home, QStringList{"工位1", "工位2"}.mid(0, cameras));
        home.write("/user/systemConfig.ini", "[COM]\nPort=/nowhere/tty\n");
        ksSysConfig::instance()->filePath = home.path("/user/systemConfig.ini"); // of the row before otherwise
        CMainWin window;                                                         // whose start waits for nobody
        QPointer<QMessageBox> box = window.findChild<QMessageBox*>();
        QVERIFY(box && box->isVisible());
        QCOMPARE(told(box->windowTitle(), box->text()), "提示|Com /nowhere/tty 115200 open failed");
        QCOMPARE(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(box->icon(), QMessageBox::Information);
        QVERIFY(box->windowFlags() & Qt::MSWindowsFixedSizeDialogHint);
        QVERIFY(QSettings(home.path("/user/systemConfig.ini"), QSettings::IniFormat).allKeys().size() >= 13);
        QCOMPARE(window.windowTitle(), QStringLiteral("气门芯定位检测系统"));
        window.show();
        const auto shows = [&](const char* name) { return window.findChild<QWidget*>(name)->isVisible(); };
        QCOMPARE(told(shows("stationView2"), shows("logPanel2"), shows("singleStationHint")),
                 cameras == 2 ? "true|true|false" : "false|false|true");
        const auto* reading = window.findChild<QWidget*>("stationView2")->findChild<QWidget*>("angleTile");
        QCOMPARE(reading->isHidden(), cameras == 1);
        box->button(QMessageBox::Yes)->click();
        QTRY_VERIFY(!box);
    }

    void cellWorksWhileTheBoxAboutItsPortIsOpen()
    {
        const TempHome home;
        writeStations(home, 2);
        home.write("/user/systemConfig.ini", "[COM]\nPort=/nowhere/tty\n");
        home.write("/user/globalConfig.json",
                   R"({"onlineMode": true, "station_solution_1": "工位1", "station_solution_2": "工位2"})");
        CMainWin window;
        QStringList shown;
        connect(&window, &CMainWin::sgShowLog, this, [&](int, const QString& text) { shown << text; });
        SComFrame indices;
        indices.command = 'C';
        indices.data[0] = 7;
        window.onAppanalysis(indices);
        QVERIFY2(shown.value(0).contains("不存在索引7"), qPrintable(shown.join('\n')));
        QVERIFY(window.findChild<QMessageBox*>()->isVisible());
    }

    void shutdownFrameClosesTheWindowAsAUserDoes()
    {
        const TempHome home;
        writeCameras(home, 2);
        SComFrame shutdown;
        shutdown.command = 0xF1;
        const std::unique_ptr<CMainWin> window = startWindow();
        window->show();
        {
            const BoxPresser no(QMessageBox::Cancel);
            emit window->sgRecvData(shutdown);
            QCOMPARE(no.said, QStringList("警告|本检测系统正在运行，您真的要关闭？|取消"));
            QVERIFY(window->isVisible());
        }
        window->findChild<QAction*>("actionStandard")->trigger();
        const auto* calibration = window->findChild<Workspaces*>()->page();
        QVERIFY(calibration->inherits("CalibrationDialog") && calibration->isVisible());
        int asked = 0;
        QTimer hand; // the PLC repeats its frame while the question is open; it is answered at the third
        connect(&hand, &QTimer::timeout, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            if (++asked < 3)
                emit window->sgRecvData(shutdown);
            else
                box->button(QMessageBox::Ok)->click();
        });
        hand.start(5);
        emit window->sgRecvData(shutdown);
        QCOMPARE(asked, 3);
        QVERIFY2(!calibration->isVisible(), "a cell without its window");
        QVERIFY(!window->isVisible());
    }

    void startUpWithoutCamerasEndsTheProcess()
    {
        const TempHome home;
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {"--fatal-child"});
        QVERIFY(child.waitForFinished(20000));
        const QString output = QString::fromUtf8(child.readAllStandardOutput());
        QVERIFY2(output.contains("提示|camera.json文件出错,请检查!|确认"), qPrintable(output));
        QCOMPARE(child.exitCode(), 0);
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    }

    void hostLivesOn_data()
    {
        Table::of<QString>({{"without the library", "--unloading-child"}, {"whatever happens", "--living-child"}});
    }
    void hostLivesOn()
    {
        const auto [kind] = Table::row<QString>();
        QProcess child;
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(QCoreApplication::applicationFilePath(), {kind});
        QVERIFY(child.waitForFinished(patienceMs));
        QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0, child.readAll().constData());
    }

    void linkCountsAsLostOnTheSixthSilentSecond()
    {
        CellStatusBar bar;
        const auto* link = bar.findChild<QLabel*>("linkLabel");
        QCOMPARE(link->text(), QStringLiteral("连接状态:"));
        bar.linkAlive();
        for (int second = 1; second <= 5; ++second)
            bar.tick(true);
        QCOMPARE(link->text(), QStringLiteral("连接状态：连接正常"));
        QVERIFY(link->styleSheet().contains("rgb(63, 170, 24)"));
        bar.tick(false);
        QCOMPARE(link->text(), QStringLiteral("连接状态：连接异常"));
        QVERIFY(link->styleSheet().contains("rgb(200, 10, 10)"));
        QCOMPARE(bar.findChild<QLabel*>("modeLabel")->text(), QStringLiteral("检测模式：离线模式"));
        bar.tick(true);
        QCOMPARE(bar.findChild<QLabel*>("modeLabel")->text(), QStringLiteral("检测模式：在线模式"));
        QVERIFY(bar.findChild<QLabel*>("timeLabel")->text().endsWith("运行时长: 00:00:07"));
        QEvent language(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&bar, &language);
        QCOMPARE(link->text(), QStringLiteral("连接状态：连接异常"));
        bar.setUserName("王工");
        QCOMPARE(bar.findChild<QLabel*>("userLabel")->text(), QStringLiteral("用户: 王工"));
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "--fatal-child") == 0)
        return fatalChild();
    if (argc > 1 && qstrcmp(argv[1], "--unloading-child") == 0)
        return unloadingChild();
    if (argc > 1 && qstrcmp(argv[1], "--living-child") == 0)
        return livingChild();
    HostTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_host.moc"
