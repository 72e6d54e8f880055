#include "WindowDriver.h"
#include "config/ksSysConfig.h"
#include "host/CMainWin.h"
#include "render/SpecDraw.h"
#include "render/WheelRenderer.h"
#include "support/Look.h"

#include <QAction>
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
    return english ? faults + Look::chinese(window) : faults;
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

    /// Presses an action, and checks and pictures what it opens; the rows of `faults` begin with the picture's name.
    static void look(CMainWin& window, QAction* action, const QString& language, QStringList* faults)
    {
        const QWidgetList before = openWindows();
        action->trigger();
        QTRY_VERIFY2(openWindows().size() > before.size(), qPrintable(action->objectName()));
        for (QWidget* opened : openWindows()) {
            if (before.contains(opened))
                continue;
            QTest::qWait(50); // what a window shows of itself only once it is on the screen
            const QString name = language + QLatin1Char('-') + action->objectName();
            for (const QString& fault : faultsOf(*opened, language == QLatin1String("English")))
                *faults << name + QStringLiteral(": ") + fault;
            Look::shoot(*opened, name);
            opened->close();
        }
        QTRY_COMPARE(openWindows(), QWidgetList{&window});
    }

private slots:
    void everyScreenIsPicturedAndItsTextsFit_data()
    {
        QTest::addColumn<QByteArray>("language");
        QTest::newRow("Chinese") << QByteArray("Chinese");
        QTest::newRow("English") << QByteArray("English");
    }

    void everyScreenIsPicturedAndItsTextsFit()
    {
        QFETCH(QByteArray, language);
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
            look(*window, action, QString::fromLatin1(language), &faults);
            ++looked;
        }
        QVERIFY(looked >= 10);
        for (const QString& fault : faults)
            qWarning("%s", qUtf8Printable(fault));
        QVERIFY(faults.isEmpty());
    }

    void programEndsWithEveryWindowOpenAndNoneIsToldTooLate()
    {
        const TempHome home;
        writePlant(home, "Chinese");
        std::unique_ptr<CMainWin> window = startWindow();
        window->show();
        for (QAction* action : window->findChild<QToolBar*>()->actions()) {
            if (!action->menu() && action->objectName() != QLatin1String("action_Check"))
                action->trigger();
        }
        for (QWidget* opened : openWindows()) {
            for (const char* button : {"addButton", "settingsButton"}) { // open dialogs of dialogs
                if (auto* more = opened->findChild<QAbstractButton*>(QLatin1String(button)))
                    more->click();
            }
        }
        const int open = openWindows().size();
        QVERIFY(open >= 14);
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
