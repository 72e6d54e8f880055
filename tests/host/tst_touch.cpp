#include "WindowDriver.h"
#include "look/keyboard/KeyButton.h"
#include "look/keyboard/KeyPanel.h"
#include "render/SpecDraw.h"
#include "render/WheelRenderer.h"
#include "support/Finger.h"

#include <QMenu>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

KeyPanel* panel()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits("KeyPanel"))
            return static_cast<KeyPanel*>(window);
    }
    return nullptr;
}

/// Taps the keys with these faces, and a blank for the space bar.
void tapKeys(Finger& finger, const QStringList& faces)
{
    for (const QString& face : faces) {
        KeyPanel* const keys = panel();
        QVERIFY2(keys, qPrintable("no keyboard for " + face));
        auto* key = keys->findChild<KeyButton*>(QStringLiteral("key") + face);
        QVERIFY2(key, qPrintable("no key " + face));
        QVERIFY(key->width() >= 40 && key->height() >= 40);
        finger.tap(key);
    }
}

QString faceOf(const char* text)
{
    return QCoreApplication::translate("ScreenKey", text);
}

/// Somebody at the window, who has but one way to operate it.
class Operator
{
public:
    explicit Operator(CMainWin& window)
        : m_window(window)
    {
    }
    virtual ~Operator() = default;

    virtual void press(QWidget* button) = 0;
    /// Replaces what stands in the field.
    virtual void type(QWidget* field, const QString& text) = 0;
    virtual void enter(int room) = 0;

    /// What can be seen and used by that name now; the button of an action by the action's.
    QWidget* seen(const QString& name) const
    {
        QWidget* found = nullptr;
        (void)QTest::qWaitFor([&] { return (found = find(name)) && found->isEnabled(); }, patienceMs);
        if (!found)
            qFatal("nothing to be seen of %s", qPrintable(name));
        return found;
    }

    int acts = 0; ///< clicks, or keys to get around; what is typed is not counted

protected:
    CMainWin& m_window;

private:
    static QWidget* find(const QString& name)
    {
        for (QWidget* widget : QApplication::allWidgets()) {
            const auto* button = qobject_cast<QToolButton*>(widget);
            const QAction* action = button ? button->defaultAction() : nullptr;
            if (widget->isVisible() && (widget->objectName() == name || (action && action->objectName() == name)))
                return widget;
        }
        return nullptr;
    }
};

class FingerOperator : public Operator
{
public:
    using Operator::Operator;

    void press(QWidget* button) override
    {
        QTRY_VERIFY2(button->visibleRegion().contains(button->rect().center()), qPrintable(button->objectName()));
        QVERIFY2(button->height() >= 40, qPrintable(button->objectName()));
        m_finger.tap(button);
        ++acts;
    }
    void type(QWidget* field, const QString& text) override
    {
        press(field);
        press(field); // twice: what stands there is chosen
        QTRY_VERIFY(panel());
        for (const QChar letter : text) {
            if (letter.isUpper())
                tapKeys(m_finger, {faceOf("大写")});
            tapKeys(m_finger, {QString(letter)});
        }
    }
    void enter(int room) override { press(seen(QStringLiteral("room%1").arg(room))); }

private:
    Finger m_finger;
};

class KeyOperator : public Operator
{
public:
    using Operator::Operator;

    void press(QWidget* button) override
    {
        reach(button);
        QTest::keyClick(button, Qt::Key_Space);
        ++acts;
    }
    void type(QWidget* field, const QString& text) override
    {
        reach(field);
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(field, text);
    }
    void enter(int room) override
    {
        QTest::keyClick(&m_window, Qt::Key(Qt::Key_0 + room), Qt::ControlModifier);
        ++acts;
    }

private:
    void reach(QWidget* goal)
    {
        goal->window()->activateWindow(); // as a window system does by itself
        QTRY_VERIFY(goal->window()->isActiveWindow());
        for (int steps = 0; QApplication::focusWidget() != goal; ++steps, ++acts) {
            QVERIFY2(steps < 120, qPrintable(goal->objectName() + " is out of the keyboard's reach"));
            QWidget* const focus = QApplication::focusWidget();
            QTest::keyClick(focus ? focus : goal->window(), Qt::Key_Tab);
        }
    }
};

void drawWheels(const TempHome& home)
{
    const wheel::WheelSpec spec =
        wheel::drawWheel(*wheel::findDesign("five"), wheel::Difficulty::Easy, {1224, 1024}, 5, true);
    const cv::Mat mat = wheel::renderWheel(spec).image;
    const QImage picture(mat.data, mat.cols, mat.rows, static_cast<int>(mat.step), QImage::Format_Grayscale8);
    for (const char* file : {"/user/StandImage_1.jpg", "/user/StandImage_2.jpg", "/images/1/w.png", "/images/2/w.png"})
        QVERIFY(picture.save(home.path(QLatin1String(file))));
}

} // namespace

class TouchTest : public QObject
{
    Q_OBJECT

private slots:
    /// In every part of a small screen, and in a dialog that blocks the rest, as those of the modules do.
    void keyboardComesToTheFingerAndLeavesItsFieldFree()
    {
        const TempHome home;
        writeStations(home, 2);
        const std::unique_ptr<CMainWin> window = startWindow();
        window->show();
        Finger finger;
        QDialog dialog(window.get());
        dialog.setModal(true);
        auto* column = new QVBoxLayout(&dialog);
        QList<QWidget*> fields{new QLineEdit, new QSpinBox, new QComboBox, new QPlainTextEdit};
        static_cast<QComboBox*>(fields[2])->setEditable(true);
        for (QWidget* field : qAsConst(fields))
            column->addWidget(field);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QVERIFY(!panel()); // the focus is in a field, but no finger was there
        QTest::mouseClick(fields[0], Qt::LeftButton);
        QCoreApplication::processEvents();
        QVERIFY(!panel());
        const QRect screen = dialog.screen()->availableGeometry();
        for (int y = screen.top(); y < screen.bottom() - 250; y += 60) {
            dialog.setGeometry(screen.center().x(), y, 300, 250);
            for (QWidget* field : qAsConst(fields)) {
                finger.tap(field, {20, 12});
                QTRY_VERIFY(panel());
                const QRect place(field->mapToGlobal({}), QSize(300, qMin(field->height(), 30)));
                QVERIFY(screen.contains(panel()->geometry()));
                QVERIFY(!panel()->geometry().intersects(place));
                QCOMPARE(panel()->page() == KeyPage::Numbers, field == fields[1]);
            }
        }
        finger.tap(fields[0], {20, 12});
        QTRY_VERIFY(panel());
        tapKeys(finger, {faceOf("大写"), "W", "1", "8", "-", "#+=", "_", "abc", "h", "x", faceOf("退格"), " ", "b"});
        QCOMPARE(static_cast<QLineEdit*>(fields[0])->text(), QStringLiteral("W18-_h b"));
        Look::shoot(*panel(), QStringLiteral("keyboard-letters"));
        tapKeys(finger, {faceOf("下一项")});
        QTRY_COMPARE(panel()->page(), KeyPage::Numbers);
        tapKeys(finger, {"4", "2"});
        QCOMPARE(static_cast<QSpinBox*>(fields[1])->value(), 42);
        Look::shoot(*panel(), QStringLiteral("keyboard-numbers"));
        tapKeys(finger, {faceOf("收起")});
        QTRY_VERIFY(!panel());
        finger.tap(fields[3], {20, 12});
        QTRY_VERIFY(panel());
        QTest::keyClick(fields[3], Qt::Key_A); // there is a real keyboard
        QTRY_VERIFY(!panel());
        for (const auto& [choice, comes] : {std::pair("不显示屏幕键盘", false), std::pair("总是显示屏幕键盘", true)}) {
            for (QAction* action : window->findChild<QMenu*>("viewMenu")->actions()) {
                if (action->text() == QString::fromUtf8(choice))
                    action->trigger();
            }
            comes ? QTest::mouseClick(fields[0], Qt::LeftButton) : finger.tap(fields[0], {20, 12});
            QTRY_VERIFY(fields[0]->hasFocus());
            QCoreApplication::processEvents();
            QCOMPARE(panel() != nullptr, comes);
        }
        dialog.close();
        QTRY_VERIFY(!panel());
        QVERIFY(home.read("/user/look.ini").contains("always"));
    }

    /// A setting, an alarm, a calibration, a model, a user: each by the one way alone.
    void everyTaskIsDoneByEachWay_data() { Table::of<bool>({{"finger", true}, {"keyboard", false}}); }
    void everyTaskIsDoneByEachWay()
    {
        const auto [finger] = Table::row<bool>();
        const TempHome home;
        writeStations(home, 2);
        home.write("/user/systemConfig.ini", "[language]\nselect=Chinese\n[COM]\nPort=/nowhere/tty\n");
        drawWheels(home);
        const std::unique_ptr<CMainWin> window = startWindow();
        window->resize(1280, 800);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        const std::unique_ptr<Operator> own(finger ? static_cast<Operator*>(new FingerOperator(*window))
                                                   : new KeyOperator(*window));
        const auto done = [&own](const char* task) { qInfo("%s: %d", task, std::exchange(own->acts, 0)); };

        own->enter(5);
        own->type(own->seen("filterEdit"), "250");
        own->press(own->seen("okButton"));
        QTRY_VERIFY(home.read("/user/globalConfig.json").contains("\"trigerFilter\": 250"));
        done("setting");

        own->press(own->seen("acknowledgeButton"));
        done("alarm");

        own->enter(4);
        own->press(own->seen("m_pbLock"));
        own->type(own->seen("m_lineEdit_Length"), "500");
        own->press(own->seen("m_pbApply"));
        QTRY_VERIFY(home.read("/user/globalConfig.json").contains("3.5355"));
        done("calibration");

        own->enter(3);
        own->press(own->seen("actionTeach"));
        own->type(own->seen("nameEdit"), "W20");
        own->press(own->seen("captureButton"));
        own->press(own->seen("nextButton"));
        own->press(own->seen("nextButton"));
        QTRY_VERIFY(home.read("/user/plcIndex.json").contains("W20"));
        done("model");

        own->enter(5);
        own->press(own->seen("main_Login_action"));
        own->type(own->seen("nameEdit"), "boss");
        own->type(own->seen("passwordEdit"), "correcthorse");
        own->type(own->seen("againEdit"), "correcthorse");
        own->press(static_cast<QDialogButtonBox*>(own->seen("buttonBox"))->button(QDialogButtonBox::Ok));
        QTRY_VERIFY(home.read("/user/users.json").contains("boss"));
        done("user");

        qint64 slowest = 0;
        for (int round = 0; round < 20; ++round) { // a figure to print, and no test of the clock
            QElapsedTimer switching;
            switching.start();
            window->findChild<QAction*>(QStringLiteral("room%1").arg(1 + round % 5))->trigger();
            QCoreApplication::processEvents();
            slowest = std::max(slowest, switching.elapsed());
        }
        qInfo("workspace_ms=%lld", static_cast<long long>(slowest));
    }
};

QTEST_MAIN(TouchTest)
#include "tst_touch.moc"
