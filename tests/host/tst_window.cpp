#include "WindowDriver.h"
#include "common/LookColors.h"
#include "common/Scheduler.h"
#include "db/PartTable.h"
#include "panels/AlarmHistory.h"
#include "panels/AlarmStrip.h"
#include "panels/LogPanel.h"
#include "panels/StationTally.h"
#include "panels/StationView.h"
#include "render/SpecDraw.h"
#include "render/WheelRenderer.h"
#include "shell/Workspaces.h"
#include "workflow/AlarmBook.h"
#include "workflow/CTrigDetector.h"
#include "workflow/DayCounts.h"

#include <QClipboard>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTableWidget>
#include <QTextBlock>

namespace {

const QImage& wheelImage()
{
    static const QImage image = [] {
        const wheel::WheelSpec spec =
            wheel::drawWheel(*wheel::findDesign("five"), wheel::Difficulty::Easy, {1280, 1024}, 5, true);
        const cv::Mat mat = wheel::renderWheel(spec).image;
        return QImage(mat.data, mat.cols, mat.rows, static_cast<int>(mat.step), QImage::Format_Grayscale8).copy();
    }();
    return image;
}

PartRow part(PartOutcome outcome, int secondsAgo)
{
    PartRow row;
    row.wall = PartTable::wallOf(QDateTime::currentDateTime().addSecs(-secondsAgo));
    row.part.outcome = outcome;
    row.part.model = "W18-5H";
    row.placed = outcome == PartOutcome::Found;
    row.part.angle = row.placed ? 213.417 : outcome == PartOutcome::Refused ? 999.0 : 361.0;
    row.part.x = 1024.508;
    row.part.y = -87.251;
    row.tip = row.placed ? "定位成功" : outcome == PartOutcome::NotFound ? "没有找到气门孔" : QString();
    return row;
}

/// Four hours in which every ninth part was not found, and every fortieth refused.
StationTally tallyOf(int station, const PartRow& last)
{
    StationTally tally;
    tally.setShifts(Shifts::fromText("06:00, 14:00, 22:00"));
    for (int i = 480; i >= 0; --i) {
        const bool failed = (i + station) % 9 == 0;
        const PartRow row = part(i % 40 == 7 ? PartOutcome::Refused
                                 : failed    ? PartOutcome::NotFound
                                             : PartOutcome::Found,
                                 i * 30);
        tally.add(row);
        if (failed)
            tally.addFailure(row);
    }
    tally.add(last);
    if (!last.placed)
        tally.addFailure(last);
    return tally;
}

QPlainTextEdit* linesOf(const LogPanel& panel)
{
    return panel.findChild<QPlainTextEdit*>("view");
}

/// The middle of a shift: a part found, one not found, lines of every kind.
void fillWindow(CMainWin& window)
{
    const QStringList lines{"★工位%1:切换型号为[W18-5H],型号索引ID为[12],时间:07:59:58 120",
                            "07:59:59 431:W18-5H angle :213.417 center:(1024.508,-87.251)",
                            "08:00:03 077:W18-5H angle :361.000 no found Value",
                            "08:00:06 102::该型号ID:7在模型库中不存在，不能拍照！！！"};
    for (int station = 1; station <= 2; ++station) {
        auto* view = window.findChild<StationView*>(QStringLiteral("stationView%1").arg(station));
        for (const QString& line : lines)
            window.onShowLog(station, QString(line).replace("%1", QString::number(station)));
        window.onSelModel(station, "W18-5H");
        view->triggered();
        view->setImage(wheelImage());
        view->setCaption("W18-5H");
        const PartRow last = part(station == 1 ? PartOutcome::Found : PartOutcome::NotFound, 0);
        view->setPart(last, false);
        view->setTally(tallyOf(station, last));
        view->setCount(station == 1 ? DayCount{1284, 3, 0} : DayCount{1279, 6, 2});
    }
}

void shoot(QWidget& window, int ratio)
{
    QPixmap picture(window.size() * ratio);
    picture.setDevicePixelRatio(ratio);
    window.render(&picture);
    const QString folder = QStringLiteral(VALVECELL_BIN_DIR "/../screenshots");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(picture.save(QStringLiteral("%1/%2.png").arg(folder, QTest::currentDataTag())));
}

} // namespace

class WindowTest : public QObject
{
    Q_OBJECT

private slots:
    void logOfALongShiftIsLimitedFilteredAndCopied()
    {
        LogPanel panel;
        panel.setStation(2);
        for (int i = 1; i <= 5000; ++i)
            panel.append(QStringLiteral("%1 angle :%2").arg(i).arg(i % 10 == 0 ? "361.000 no found Value" : "17.000"));
        QTRY_COMPARE(linesOf(panel)->blockCount(), LogPanel::maxLines);
        QVERIFY(linesOf(panel)->toPlainText().startsWith("3001 "));

        panel.findChild<QAbstractButton*>("troubleButton")->click();
        QCOMPARE(linesOf(panel)->blockCount(), LogPanel::maxLines / 10);
        panel.findChild<QLineEdit*>("filterEdit")->setText("499");
        QTRY_COMPARE(linesOf(panel)->toPlainText(), QStringLiteral("4990 angle :361.000 no found Value"));
        for (const char* line : {"4991 angle :17.000", "4992 No Task!!!", "5000 No Task!!!", "14993 No Task!!!"})
            panel.append(line);
        QTRY_COMPARE(linesOf(panel)->blockCount(), 3);
        QVERIFY(linesOf(panel)->toPlainText().endsWith("14993 No Task!!!"));
        panel.findChild<QAbstractButton*>("copyButton")->click();
        QCOMPARE(QApplication::clipboard()->text(), linesOf(panel)->toPlainText());
    }

    void lookIsKeptForTheNextStart()
    {
        const TempHome home;
        writeStations(home, 1);
        const auto choose = [](CMainWin& window, LookKind look) {
            const auto actions = window.findChild<QMenu*>("viewMenu")->actions();
            for (QAction* action : actions)
                if (action->data() == int(look))
                    action->trigger();
        };
        {
            const auto first = startWindow();
            choose(*first, LookKind::Dark);
            QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 64);
        }
        QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 128);
        const auto window = startWindow();
        QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 64);
        auto* panel = window->findChild<LogPanel*>("logPanel1");
        window->onShowLog(1, "08:00:00 000:a line");
        QTRY_VERIFY(!linesOf(*panel)->toPlainText().isEmpty());
        const auto ink = [panel] {
            return linesOf(*panel)->document()->firstBlock().layout()->formats().value(0).format.foreground().color();
        };
        QVERIFY(ink().lightness() > 192);
        choose(*window, LookKind::Light);
        QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 192);
        QTRY_VERIFY(ink().lightness() < 64);
        choose(*window, LookKind::Contrast);
        QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(Qt::black));
        QVERIFY(home.read("/user/look.ini").contains("contrast"));
    }

    void viewersOfferTheirMenu()
    {
        const TempHome home;
        writeStations(home, 2);
        const auto window = startWindow();
        window->show();
        auto* viewer = window->findChild<QWidget*>("stationView2")->findChild<QWidget*>("viewer");
        emit viewer->customContextMenuRequested({20, 20});
        QTRY_VERIFY(QApplication::activePopupWidget());
        QVERIFY(qobject_cast<QMenu*>(QApplication::activePopupWidget())->actions().size() >= 4);
        QApplication::activePopupWidget()->close();
    }

    void aDeadIndexIsNeverGreen()
    {
        StationView view;
        view.setStation(1);
        const QString green = "<html><body><h4><span style = 'color:#00a000;'>当前检测型号: 工位1_钢圈< /span>< /h4>";
        const auto text = [&view](const char* name) { return view.findChild<QLabel*>(name)->text(); };
        view.setModelLabel(green);
        QVERIFY(text("modelLabel").contains("钢圈"));
        view.setNoModel(7);
        QVERIFY2(text("modelLabel").contains("索引7没有型号") && text("modelLabel").contains("#ff0000"),
                 qPrintable(text("modelLabel")));
        view.setNoModel(0);
        QVERIFY(text("modelLabel").contains("#808080"));
        view.setModelLabel(green);
        QVERIFY(text("modelLabel").contains("#00a000"));
    }

    void logGoesOnFollowingItsEnd()
    {
        LogPanel panel;
        panel.resize(500, 200);
        panel.show();
        const QScrollBar* bar = linesOf(panel)->verticalScrollBar();
        int number = 0;
        const auto isAtEnd = [&] {
            for (int i = 0; i < 40; ++i)
                panel.append(QStringLiteral("08:00 line %1").arg(++number));
            const QString last = QStringLiteral("line %1").arg(number);
            return QTest::qWaitFor([&] { return linesOf(panel)->toPlainText().endsWith(last); }) &&
                   bar->maximum() > 0 && bar->value() == bar->maximum();
        };
        QVERIFY(isAtEnd());
        panel.findChild<QLineEdit*>("filterEdit")->setText("line");
        QTest::qWait(300); // what was typed takes effect after a pause
        QVERIFY2(isAtEnd(), "filter");
        panel.setStyleSheet("QPlainTextEdit { font-size: 17px; }");
        QVERIFY2(isAtEnd(), "look");
        QEvent language(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&panel, &language);
        QVERIFY2(isAtEnd(), "language");
        linesOf(panel)->verticalScrollBar()->setValue(3);
        QVERIFY2(!isAtEnd() && bar->value() == 3, "who reads stays where he reads");
    }

    void testFramesTheWindowAndTheHostGetsItsLookBack()
    {
        const TempHome home;
        writeStations(home, 2);
        home.write("/user/globalConfig.json", R"({"onlineMode": true})");
        const QPointer<QStyle> style = QApplication::style();
        const QPalette palette = QApplication::palette();
        auto window = startWindow();
        window->show();
        const auto shows = [&window] {
            const QImage image = window->grab().toImage();
            return window->findChild<QLabel*>("modeBand")->isVisible() &&
                   image.pixel(2, image.height() / 2) != image.pixel(7, image.height() / 2);
        };
        for (const int mode : {TestMode::Stop, TestMode::Start, TestMode::SnapStation1, TestMode::Stop}) {
            window->onTestMode(mode);
            QCOMPARE(shows(), mode != TestMode::Stop);
        }
        window.reset();
        QVERIFY(style && QApplication::style() == style);
        QCOMPARE(QApplication::palette(), palette);
    }

    void pagesLeadBackToWhereOneCameFrom()
    {
        const TempHome home;
        writeStations(home, 2);
        const auto window = startWindow();
        window->show();
        auto& rooms = *window->findChild<Workspaces*>();
        const auto shown = [&rooms] { return QByteArray(rooms.page()->metaObject()->className()); };
        const auto keys = [&](int key, Qt::KeyboardModifiers with = Qt::ControlModifier) {
            QTest::keyClick(window->focusWidget() ? window->focusWidget() : window.get(), Qt::Key(key), with);
        };
        QApplication::setActiveWindow(window.get());
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        const QByteArray run = shown();
        keys(Qt::Key_3);
        QCOMPARE(shown(), "QModelMangerUI");
        keys(Qt::Key_5);
        QCOMPARE(shown(), "QSystemSettingUI");
        window->findChild<QAction*>("actionPlc")->trigger();
        const QPointer<QWidget> monitor = rooms.page();
        QCOMPARE(shown(), "QPlcMonitorUI");
        QVERIFY(monitor->isVisible() && !monitor->isWindow() && window->isAncestorOf(monitor));
        keys(Qt::Key_1);
        QCOMPARE(shown(), run);
        QVERIFY(!monitor->isVisible() && !monitor->isHidden());
        keys(Qt::Key_5);
        QCOMPARE(rooms.page(), monitor); // the room's last
        keys(Qt::Key_Escape, Qt::NoModifier);
        QCOMPARE(shown(), run);
        keys(Qt::Key_5);
        QCOMPARE(shown(), "QSystemSettingUI");
        static_cast<QDialog*>(rooms.page())->accept();
        keys(Qt::Key_3);
        keys(Qt::Key_Escape, Qt::NoModifier);
        keys(Qt::Key_Escape, Qt::NoModifier);
        QCOMPARE(shown(), run);

        int made = 0;
        const auto make = [&made] { return ++made, new QLineEdit; };
        rooms.addPage({"actionGuest", Workspaces::Models, [] { return QStringLiteral("Guest"); }, {}, true, make});
        for (int times = 0; times < 2; ++times)
            window->findChild<QAction*>("actionGuest")->trigger();
        QCOMPARE(told(made, shown()), "1|QLineEdit");
        keys(Qt::Key_Escape, Qt::NoModifier);
        QCOMPARE(shown(), run);
        rooms.lockEngineers(true);
        QVERIFY(window->findChild<QAction*>("actionGuest")->property("locked").toBool());
    }

    void alarmsStayQuiet()
    {
        AlarmBook book(Scheduler::system());
        AlarmStrip strip;
        strip.setBook(&book);
        const auto text = [&strip](const char* name) {
            QStringList lines;
            for (const QLabel* label : strip.findChildren<QLabel*>(name))
                if (!label->parentWidget()->isHidden() && !label->isHidden())
                    lines << label->text();
            return lines.join('\n');
        };
        QVERIFY(strip.isHidden());
        strip.resize(1280, 1000); // a window of its own, and no low one
        book.raise(Alarm::PortLost, "COM3", {});
        QCOMPARE(text("textLabel"), "PLC串口断开：COM3");
        QVERIFY(text("remedyLabel").contains("检查串口线"));
        book.raise(Alarm::PortLost, "COM3", "COM3正被另一个程序使用：关闭那个程序");
        QCOMPARE(text("textLabel"), "PLC串口断开：COM3正被另一个程序使用：关闭那个程序");
        QCOMPARE(text("remedyLabel"), "恢复后自动连接"); // the module said what helps
        book.raiseCounted(Alarm::ImagesGivenUp, {}, 12);
        QVERIFY(!strip.isHidden());
        QCOMPARE(text("textLabel").section('\n', 0, 0), QStringLiteral("图像保存过慢，已放弃图像  ×12"));
        book.raise(Alarm::DiskLow, {}, "3.5");
        QCOMPARE(text("textLabel").section('\n', 0, 0), QStringLiteral("磁盘空间不足，剩余3.5 GB"));
        book.clear(Alarm::DiskLow, {});
        book.raise(Alarm::CameraLost, "cam1", "x");
        book.raise(Alarm::CameraLost, "cam2", "x");
        QCOMPARE(text("textLabel").count('\n'), 2);
        QCOMPARE(told(text("moreLabel"), text("remedyLabel").count('\n')), "另有1条|2");
        QStringList wanted;
        connect(&strip, &AlarmStrip::actionWanted, [&](const QString& action) { wanted << action; });
        strip.findChild<QAbstractButton*>("placeButton")->click();
        strip.findChild<QAbstractButton*>("historyButton")->click();
        QCOMPARE(wanted, QStringList({"actionCamera", "actionAlarms"}));
        AlarmHistory history(book);
        history.show();
        const auto* list = history.findChild<QTableWidget*>("table");
        QCOMPARE(list->rowCount(), 5);
        QCOMPARE(list->item(4, 2)->text(), QStringLiteral("磁盘空间不足，剩余3.5 GB"));
        QVERIFY(list->item(0, 1)->text() == "—" && list->item(4, 1)->text() != "—");
        strip.findChild<QAbstractButton*>("acknowledgeButton")->click();
        QVERIFY(strip.findChild<QAbstractButton*>("acknowledgeButton")->isHidden());
        QCOMPARE(book.alarms().size(), 3);
        for (const auto& [alarm, of] :
             {std::pair(Alarm::PortLost, "COM3"), {Alarm::CameraLost, "cam1"}, {Alarm::CameraLost, "cam2"}})
            book.clear(alarm, of);
        QVERIFY(strip.isHidden());
    }

    void windowFitsItsScreens_data()
    {
        const QSize small(1280, 800);
        const QSize large(1920, 1080); // of 4K, at two pixels to one
        Table::of<QByteArray, bool, int, QSize>({{"window-light", "Chinese", false, 2, small},
                                                 {"window-dark", "Chinese", true, 2, small},
                                                 {"window-light-4k", "Chinese", false, 2, large},
                                                 {"window-en-light", "English", false, 2, small},
                                                 {"window-en-dark-4k", "English", true, 2, large},
                                                 {"window-one-camera", "Chinese", false, 1, small},
                                                 {"window-en-one-camera", "English", true, 1, small},
                                                 {"window-one-camera-4k", "Chinese", true, 1, large}});
    }
    void windowFitsItsScreens()
    {
        const auto [language, dark, cameras, size] = Table::row<QByteArray, bool, int, QSize>();
        const TempHome home;
        writeStations(home, cameras);
        ksSysConfig::instance()->filePath = home.path("/user/systemConfig.ini");
        home.write("/user/systemConfig.ini", "[language]\nselect=" + language + "\n");
        home.write("/user/look.ini", dark ? "[Look]\nDark=true\n" : "[Look]\nDark=false\n");
        const auto window = startWindow();
        window->resize(size);
        window->show();
        QTRY_VERIFY(window->findChild<AlarmStrip*>()->isVisible()); // there is no serial port
        fillWindow(*window);
        QTRY_VERIFY(!linesOf(*window->findChild<LogPanel*>("logPanel1"))->toPlainText().isEmpty());
        QCOMPARE(window->size(), size);
        shoot(*window, size.width() > 1280 ? 2 : 1);
        QCOMPARE(Look::overlapping(*window) + Look::clipped(*window), QStringList());
    }
};

QTEST_MAIN(WindowTest)
#include "tst_window.moc"
