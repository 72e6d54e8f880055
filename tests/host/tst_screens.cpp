#include "WindowDriver.h"
#include "render/SpecDraw.h"
#include "render/WheelRenderer.h"
#include "shell/PageHolder.h"

#include <QAction>
#include <QHeaderView>
#include <QTabWidget>

namespace {

/// A home of two stations whose plant gave no Chinese names, so that any Chinese on an English screen is the program's.
void writePlant(const TempHome& home, const QByteArray& language)
{
    writeCameras(home, 2);
    writeSolutions(home, {"S1", "S2"});
    home.write("/user/globalConfig.json", R"({"station_solution_1": "S1", "station_camkey_1": "cam1",
               "station_solution_2": "S2", "station_camkey_2": "cam2"})");
    home.write("/user/plcIndex.json",
               R"({"S1": [{"Name": "W18", "PlcIndex": 3}], "S2": [{"Name": "W18", "PlcIndex": 3}]})");
    ksSysConfig::instance()->filePath = home.path("/user/systemConfig.ini"); // of the test before otherwise
    home.write("/user/systemConfig.ini", "[language]\nselect=" + language + "\n[COM]\nPort=/nowhere/tty\n");
    const wheel::WheelSpec spec =
        wheel::drawWheel(*wheel::findDesign("five"), wheel::Difficulty::Easy, {1224, 1024}, 5, true);
    const cv::Mat wheel = wheel::renderWheel(spec).image;
    const QImage picture(wheel.data, wheel.cols, wheel.rows, static_cast<int>(wheel.step), QImage::Format_Grayscale8);
    for (const char* file : {"/user/StandImage_1.jpg", "/user/StandImage_2.jpg"})
        QVERIFY(picture.save(home.path(QLatin1String(file))));
}

QWidgetList openWindows()
{
    QWidgetList open;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && !window->inherits("QMenu") && !window->inherits("QTipLabel"))
            open << window;
    }
    return open;
}

/// The middle of the operator's window.
Workspaces& roomsOf(const CMainWin& window)
{
    return *window.findChild<Workspaces*>();
}

/// Controls that a gloved finger misses, below a widget.
QStringList tooSmall(const QWidget& part)
{
    constexpr int finger = 40;
    QStringList faults;
    for (const QWidget* widget : part.findChildren<QWidget*>()) {
        const QWidget* parent = widget->parentWidget();
        const bool isPart = parent->inherits("QComboBox") || parent->inherits("QAbstractSpinBox") ||
                            parent->inherits("QLineEdit") || parent->inherits("QTabBar") ||
                            parent->inherits("QHeaderView") || widget->inherits("QTableCornerButton");
        const bool isTouched = widget->inherits("QPushButton") || widget->inherits("QLineEdit") ||
                               widget->inherits("QComboBox") || widget->inherits("QToolButton") ||
                               widget->inherits("QAbstractSpinBox") || widget->inherits("StatePill");
        if (isTouched && !isPart && widget->isVisible() && widget->height() < finger)
            faults << QStringLiteral("%1 is %2 high").arg(Look::nameOf(widget)).arg(widget->height());
        const auto* table = qobject_cast<const QTableView*>(widget);
        if (table && table->isVisible() && table->verticalHeader()->defaultSectionSize() < finger)
            faults << QStringLiteral("%1 has rows of %2")
                          .arg(Look::nameOf(widget))
                          .arg(table->verticalHeader()->defaultSectionSize());
    }
    return faults;
}

/// English words on a Chinese screen, but for names and what is so named everywhere.
QStringList english(const QWidget& part)
{
    static const QRegularExpression words(QStringLiteral("[A-Za-z]{3,}( [A-Za-z]+)*"));
    static const QRegularExpression usual(QStringLiteral(
        "PLC|IDs?|COM|CSV|PDF|XLSX|Excel|JSON|RGB|HSV|GB|cam[12]|S[12]|W18|Ctrl|Esc|ValveCell|Qt|OpenCV|MIT|"
        "auto|cam|Language|Debian|Virtual|Opened|None|SHA|CRC|GAMMA|English|Chinese|mm|px|deg|Cpk?|UCL|LCL"));
    QStringList faults;
    for (const QWidget* widget : part.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->inherits("QLineEdit") || widget->parentWidget()->inherits("QTabBar"))
            continue;
        for (const char* property : {"text", "title"}) {
            QString text = widget->property(property).toString();
            text.remove(
                QRegularExpression(QStringLiteral("<[^>]*>|[^ ]*[/.:_][^ ]*"))); // marks, paths, versions, names
            const QString word = words.match(text).captured();
            if (!word.isEmpty() && !usual.match(word).hasMatch())
                faults << QStringLiteral("%1 says “%2”").arg(Look::nameOf(widget), word);
        }
    }
    return faults;
}

/// What a page needs that its room does not have; in a room for less than 1024 pixels it may scroll, and in its height
/// anything but a guide.
QStringList tooLarge(const QWidget& window)
{
    QStringList faults;
    for (const auto* area : window.findChildren<PageHolder*>()) {
        if (window.width() < 1024 || !area->isVisible() || !area->widget())
            continue;
        const QSize size = area->widget()->size();
        const QSize room = area->viewport()->size();
        if (size.width() > room.width() || (area->widget()->inherits("GuideDialog") && size.height() > room.height()))
            faults << QStringLiteral("%1 is %2 × %3, its room %4 × %5")
                          .arg(Look::nameOf(area->widget()))
                          .arg(size.width())
                          .arg(size.height())
                          .arg(room.width())
                          .arg(room.height());
    }
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isShell = widget->inherits("ShellButton") || widget->inherits("StatePill");
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (isShell && widget->isVisible() && !window.rect().contains(place))
            faults << Look::nameOf(widget) + QStringLiteral(" is off the screen");
    }
    return faults;
}

/// What is wrong with a window's look, in a line for each fault.
QStringList faultsOf(const QWidget& window, bool isEnglish)
{
    QStringList faults = Look::clipped(window) + Look::overlapping(window) + tooSmall(window) + tooLarge(window);
    for (const char* cutting : {"label_status", "label_status_2"}) // cut their own text, with the whole in the tip
        faults.removeAll(QLatin1String(cutting));
    if (isEnglish)
        faults += Look::chinese(window).filter(QRegularExpression(QStringLiteral("^(?!.*工厂)"))); // the home's path
    else
        faults += english(window);
    return faults;
}

/// Windows that leave the screen only when nothing of them is left but Qt's part: a field of theirs that loses the
/// focus then tells members that are gone.
class LateWindows : public QObject
{
public:
    LateWindows() { qApp->installEventFilter(this); }

    QStringList seen; ///< that left in time
    QStringList late;

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Hide && object->isWidgetType() && static_cast<QWidget*>(object)->isWindow()) {
            const QByteArray left = object->metaObject()->className();
            (left == "QDialog" || left == "QWidget" || left == "QMainWindow" ? late : seen) << object->objectName();
        }
        return false;
    }
};

} // namespace

class ScreensTest : public QObject
{
    Q_OBJECT

    /// What the window offers, but for another program.
    static QList<QAction*> actionsOf(const CMainWin& window)
    {
        auto actions = window.findChildren<QAction*>(QRegularExpression("action"), Qt::FindDirectChildrenOnly);
        actions.removeOne(window.findChild<QAction*>("action_Check"));
        return actions;
    }

    /// The station's count of parts that were not found.
    static void clickFailures(const CMainWin& window)
    {
        QTest::mouseClick(window.findChild<QWidget*>(QStringLiteral("notFoundTile")), Qt::LeftButton);
    }

    /// Opens what the windows of a dialog open in their turn.
    static void openMore(const QWidgetList& windows)
    {
        for (QWidget* opened : windows) {
            for (const char* button : {"addButton", "settingsButton"}) {
                if (auto* more = opened->findChild<QAbstractButton*>(QLatin1String(button)))
                    more->click();
            }
        }
    }

    /// Checks and pictures a window as it is; the rows of `faults` begin with the picture's name.
    static void look(QWidget& window, const QString& name, bool isEnglish, QStringList* faults)
    {
        QTest::qWait(50); // what a window shows of itself only once it is on the screen
        const bool right = QTest::qWaitFor([&] { return faultsOf(window, isEnglish).isEmpty(); }, patienceMs / 40);
        for (const QString& fault : right ? QStringList() : faultsOf(window, isEnglish))
            *faults << name + QStringLiteral(": ") + fault;
        for (const QString& fault : faults->filter(name + QLatin1Char(':')))
            qWarning("%s", qUtf8Printable(fault)); // a list is cut off in a message
        Look::shoot(window, name);
    }

private slots:
    void everyScreenIsPicturedAndItsTextsFit_data()
    {
        const QSize usual(1280, 800);
        const QSize small(1024, 768);
        Table::of<QByteArray, QByteArray, QSize>({{"zh-light", "Chinese", "light", small},
                                                  {"zh-dark", "Chinese", "dark", usual},
                                                  {"zh-contrast", "Chinese", "contrast", small},
                                                  {"zh-4k", "Chinese", "light", {960, 540}},
                                                  {"en-light", "English", "light", usual},
                                                  {"en-dark", "English", "dark", small},
                                                  {"en-contrast", "English", "contrast", usual}});
    }

    void everyScreenIsPicturedAndItsTextsFit()
    {
        const auto [language, kind, size] = Table::row<QByteArray, QByteArray, QSize>();
        const bool isEnglish = language == "English";
        const TempHome home;
        writePlant(home, language);
        home.write("/user/look.ini", "[Look]\nName=" + kind + "\n");
        const std::unique_ptr<CMainWin> window = startWindow();
        const bool qtIsChinese = QCoreApplication::translate("QFileDialog", "Look in:") != QLatin1String("Look in:");
        QCOMPARE(qtIsChinese, !isEnglish);
        window->resize(size);
        window->show();
        const Workspaces& rooms = roomsOf(*window);
        QStringList faults;
        QSet<QWidget*> pages;
        const auto name = [](const QString& what) {
            return QString::fromLatin1(QTest::currentDataTag()) + QLatin1Char('-') + what;
        };
        look(*window, name("run"), isEnglish, &faults);
        QCOMPARE(window->size(), size);
        for (QAction* action : actionsOf(*window)) {
            const QWidgetList before = openWindows();
            action->trigger();
            if (openWindows() == before) { // in its place
                look(*window, name(action->objectName()), isEnglish, &faults);
                pages << rooms.page();
                openMore({rooms.page()});
            }
            for (auto* tabs : rooms.page()->findChildren<QTabWidget*>()) {
                for (int page = 1; tabs->isVisible() && page < tabs->count(); ++page) {
                    tabs->setCurrentIndex(page);
                    look(*window, name(action->objectName() + QString::number(page)), isEnglish, &faults);
                }
            }
            for (QWidget* one : openWindows()) {
                if (before.contains(one))
                    continue;
                openMore({one});
                if (!one->inherits("QMessageBox")) // as it was asked
                    look(*one, name(action->objectName() + '-' + one->metaObject()->className()), isEnglish, &faults);
                one->close();
            }
            QTRY_COMPARE(openWindows(), QWidgetList{window.get()});
        }
        QVERIFY(pages.size() >= 12);
        QCOMPARE(window->size(), size); // no page made it larger
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    void everyWindowFollowsTheLanguageAndLeavesInTime()
    {
        const TempHome home;
        writePlant(home, "Chinese");
        std::unique_ptr<CMainWin> window = startWindow();
        window->show();
        for (QAction* action : actionsOf(*window))
            action->trigger();
        clickFailures(*window);
        openMore(openWindows());
        const int open = openWindows().size();
        QVERIFY(open >= 5);
        QStringList faults;
        window->onLanguageChange("English");                    // below all of them
        for (auto* dialog : window->findChildren<QDialog*>()) { // the window still shows what it said before
            if (!dialog->isHidden() && !dialog->inherits("QMessageBox"))
                look(*dialog, QStringLiteral("switched-") + dialog->metaObject()->className(), true, &faults);
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
        QCOMPARE(window->windowTitle(), QStringLiteral("Valve Hole Locating System"));
        QVERIFY(home.read("/user/systemConfig.ini").contains("English"));
        const LateWindows leaving;
        for (const char* dialog : {"QCameraSettingsUI", "QCameraManagerUI"}) // as when their user logs out
            delete window->findChild<QDialog*>(QLatin1String(dialog));
        window.reset();
        QCOMPARE(leaving.late, QStringList());
        QVERIFY2(leaving.seen.size() >= open, qPrintable(leaving.seen.join(' ')));
    }
};

QTEST_MAIN(ScreensTest)
#include "tst_screens.moc"
