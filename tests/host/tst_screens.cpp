#include "WindowDriver.h"
#include "render/SpecDraw.h"
#include "render/WheelRenderer.h"

#include <QAction>
#include <QTabWidget>
#include <QToolBar>

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

/// What is wrong with a window's look, in a line for each fault.
QStringList faultsOf(const QWidget& window, bool english)
{
    QStringList faults = Look::clipped(window) + Look::overlapping(window);
    for (const char* cutting : {"label_status", "label_status_2"}) // cut their own text, with the whole in the tip
        faults.removeAll(QLatin1String(cutting));
    if (english)
        faults += Look::chinese(window).filter(QRegularExpression(QStringLiteral("^(?!.*工厂)"))); // the home's path
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

    /// Checks and pictures windows; the rows of `faults` begin with the picture's name.
    static void look(const QWidgetList& windows, const QString& name, bool english, QStringList* faults)
    {
        QTest::qWait(50); // what a window shows of itself only once it is on the screen
        for (QWidget* opened : windows) {
            if (opened->inherits("QMessageBox"))
                continue; // as it was asked
            const bool right = QTest::qWaitFor([&] { return faultsOf(*opened, english).isEmpty(); }, patienceMs / 40);
            const QString picture = name + QLatin1Char('-') + QLatin1String(opened->metaObject()->className());
            for (const QString& fault : right ? QStringList() : faultsOf(*opened, english))
                *faults << picture + QStringLiteral(": ") + fault;
            const QSize least = opened->minimumSizeHint();
            if (least.width() > 1240 || least.height() > 740)
                *faults << QStringLiteral("%1: %2 x %3 is too large for a screen of 1280 x 800")
                               .arg(picture)
                               .arg(least.width())
                               .arg(least.height());
            Look::shoot(*opened, picture);
        }
    }

    /// Looks at what an action, or a click, opens.
    static void look(CMainWin& window, const QString& what, const std::function<void()>& open, const QString& language,
                     QStringList* faults)
    {
        const QWidgetList before = openWindows();
        const auto opened = [&before] {
            QWidgetList fresh;
            for (QWidget* one : openWindows()) {
                if (!before.contains(one))
                    fresh << one;
            }
            return fresh;
        };
        open();
        QTRY_VERIFY2(!opened().isEmpty(), qPrintable(what));
        openMore(opened());
        look(opened(), language + QLatin1Char('-') + what, language == QLatin1String("English"), faults);
        for (QWidget* one : opened()) {
            auto* pages = one->inherits("ResultsDialog") ? one->findChild<QTabWidget*>() : nullptr;
            for (int page = 1; pages && page < pages->count(); ++page) {
                pages->setCurrentIndex(page);
                look({one}, QStringLiteral("%1-%2-%3").arg(language, what).arg(page),
                     language == QLatin1String("English"), faults);
            }
        }
        for (QWidget* one : opened())
            one->close();
        QTRY_COMPARE(openWindows(), QWidgetList{&window});
    }

private slots:
    void everyScreenIsPicturedAndItsTextsFit_data()
    {
        Table::of<QByteArray>({{"Chinese", "Chinese"}, {"English", "English"}});
    }

    void everyScreenIsPicturedAndItsTextsFit()
    {
        const auto [language] = Table::row<QByteArray>();
        const TempHome home;
        writePlant(home, language);
        home.write("/user/look.ini", language == "English" ? "[Look]\nDark=true\n" : "[Look]\nDark=false\n");
        const std::unique_ptr<CMainWin> window = startWindow();
        const bool qtIsChinese = QCoreApplication::translate("QFileDialog", "Look in:") != QLatin1String("Look in:");
        QCOMPARE(qtIsChinese, language == "Chinese");
        window->resize(1280, 800);
        window->show();
        QStringList faults;
        int looked = 0;
        const auto actions = window->findChild<QToolBar*>()->actions();
        for (QAction* action : actions) {
            const bool opens = !action->isSeparator() && !action->menu() && !action->objectName().isEmpty() &&
                               action->objectName() != QLatin1String("action_Check"); // another program
            if (!opens)
                continue;
            look(
                *window, action->objectName(), [action] { action->trigger(); }, QString::fromLatin1(language), &faults);
            ++looked;
        }
        look(
            *window, QStringLiteral("results"), [&] { clickFailures(*window); }, QString::fromLatin1(language),
            &faults);
        QVERIFY(looked >= 10);
        QCOMPARE(faults.join('\n'), QString());
    }

    void everyWindowFollowsTheLanguageAndLeavesInTime()
    {
        const TempHome home;
        writePlant(home, "Chinese");
        std::unique_ptr<CMainWin> window = startWindow();
        window->show();
        for (QAction* action : window->findChild<QToolBar*>()->actions()) {
            if (!action->menu() && action->objectName() != QLatin1String("action_Check"))
                action->trigger();
        }
        clickFailures(*window);
        openMore(openWindows());
        const int open = openWindows().size();
        QVERIFY(open >= 14);
        QStringList faults;
        window->onLanguageChange("English"); // below all of them
        QWidgetList dialogs = openWindows();
        dialogs.removeOne(window.get()); // it still shows what it said before
        look(dialogs, "switched", true, &faults);
        QCOMPARE(faults.join('\n'), QString());
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
