#include "WindowDriver.h"
#include "look/keyboard/KeyButton.h"
#include "look/keyboard/KeyPanel.h"
#include "support/Finger.h"

#include <QMenu>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSpinBox>
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
};

QTEST_MAIN(TouchTest)
#include "tst_touch.moc"
