#include "WindowDriver.h"
#include "config/AccessPolicy.h"
#include "config/ksGlobalData.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/registration/QCryptokeyUI.h"
#include "dialogs/settings/QSystemSettingUI.h"
#include "host/CMainWin.h"
#include "licence/Licence.h"
#include "licence/RsaKey.h"
#include "look/LanguageSwitch.h"
#include "platform/PseudoTerminal.h"

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPlainTextEdit>

class SettingsInUseTest : public QObject
{
    Q_OBJECT

private slots:
    void otherPortAndLanguageAreUsedAtOnce()
    {
        platform::PseudoTerminal plc;
        QVERIFY2(plc.open(QIODevice::ReadWrite), qPrintable(plc.errorString()));
        QByteArray heard;
        connect(&plc, &QIODevice::readyRead, [&] { heard += plc.readAll(); });
        Program program;
        program.start();
        program.act("actionSystem");
        auto* dialog = program.open("QSystemSettingUI");
        QVERIFY(dialog);
        const DialogDriver driver(*dialog);
        driver.type("portEdit", plc.farEnd());
        auto* languages = driver.get<QComboBox>("languageBox");
        languages->setCurrentIndex(languages->findData("English"));
        driver.press("applyButton");
        QTRY_VERIFY2(heard.contains("\xAA\x55"), "no heartbeat on the new port");
        QTRY_COMPARE(dialog->windowTitle(), QStringLiteral("System settings"));
        LanguageSwitch().apply("Chinese");
    }

    void engineeringNeedsAnEngineer()
    {
        Program program;
        program.home.write("/user/access.json", "{\"engineer_only\": true}");
        program.start();
        for (const char* action : {"actionSystem", "actionManage", "actionStandard", "actionTest", "actionSetting"}) {
            program.act(action);
            QDialog* logIn = program.open("NewUserDialog");
            QVERIFY2(logIn && QApplication::topLevelWidgets().contains(logIn), action);
            QVERIFY2(!program.open("QSystemSettingUI") && !program.open("QModelMangerUI"), action);
            QVERIFY2(!program.open("CalibrationDialog"), action);
            if (qstrcmp(action, "actionSetting") != 0)
                logIn->reject();
        }
        program.act("actionPlc");
        QVERIFY2(program.open("QPlcMonitorUI"), "what an operator does needs nobody's leave");
        program.createAdministrator();
        program.act("actionTest");
        program.act("actionSystem");
        program.act("actionManage");
        QVERIFY(program.open("QSystemSettingUI") && program.open("QModelMangerUI"));
        DialogDriver(*program.open("QModelMangerUI")).press("importButton");
        QVERIFY(program.open("QFileDialog"));
        const BoxPresser yes(QMessageBox::Yes);
        program.act("main_Login_action"); // logs out
        QVERIFY(!program.open("QSystemSettingUI") && !program.open("QModelMangerUI") && !program.open("QFileDialog"));
        QVERIFY(!program.open("QTestWidget") && program.open("QPlcMonitorUI"));
    }

    void designerGoesWithItsEngineerAndKeepsHisEdits()
    {
        Program program;
        program.home.write("/user/access.json", "{\"engineer_only\": true}");
        program.start();
        program.act("actionSetting");
        program.createAdministrator();
        program.act("actionSetting");
        auto* designer = program.open<QWidget>("DesignerWindow");
        QVERIFY(designer);
        const DialogDriver driver(*designer);
        driver.press("addButton");
        auto* question = driver.get<QWidget>("ModelPanel")->findChild<QWidget*>("ask", Qt::FindDirectChildrenOnly);
        question->findChild<QPushButton*>("firstAnswer")->click();
        driver.type("hole_radius", "15");
        QVERIFY(designer->isWindowModified());
        driver.press("chooseButton"); // opens a file dialog
        {
            const BoxPresser yes(QMessageBox::Yes);
            program.act("main_Login_action"); // logs out
        }
        QVERIFY(!designer->isVisible() && !program.open("QFileDialog"));
        QCOMPARE(driver.text("hole_radius"), QStringLiteral("15"));
        QStringList said;
        QTimer hand; // confirms closing, and takes fright at what would be lost
        connect(&hand, &QTimer::timeout, [&said] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            said << box->text();
            box->button(said.size() == 1 ? QMessageBox::Ok : QMessageBox::Cancel)->click();
        });
        hand.start(5);
        program.window->close();
        QVERIFY(program.window->isVisible());
        QVERIFY2(said.value(1).contains("工位1 / "), qPrintable(said.join('\n')));
    }

    void spoiledPolicyRestricts_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<bool>("restricted");
        QTest::newRow("missing") << QByteArray() << false;
        QTest::newRow("off") << QByteArray("{\"engineer_only\": false}") << false;
        QTest::newRow("no truth value") << QByteArray("{\"engineer_only\": \"no\"}") << true;
        QTest::newRow("emptied") << QByteArray("{}") << true;
        QTest::newRow("cut off") << QByteArray("{\"engineer_only\": fal") << true;
    }
    void spoiledPolicyRestricts()
    {
        QFETCH(QByteArray, file);
        const TempHome home;
        if (!file.isEmpty())
            home.write("/user/access.json", file);
        AccessPolicy policy;
        policy.load();
        QTEST(policy.engineerOnly, "restricted");
    }

    void licenceTakesTheBannerAway()
    {
        QFile secret(QStringLiteral(VALVECELL_BIN_DIR "/../licence/private.pem"));
        if (!secret.open(QIODevice::ReadOnly))
            QSKIP("built with a vendor's key");
        const Rsa::PrivateKey key(secret.readAll());
        Program program;
        program.start();
        QVERIFY(program.isBannerShown());
        program.act("actionRegister");
        auto* dialog = program.open("QCryptokeyUI");
        QVERIFY(dialog && dialog->isModal() && dialog->parentWidget() == program.window.get());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("注册"));
        const DialogDriver driver(*dialog);
        const QDate today = QDate::currentDate();
        const Licence licence{"演示", driver.text("codeEdit"), 2, today, today.addDays(40)};
        const QByteArray payload = LicenceText::payload(licence);
        driver.get<QPlainTextEdit>("licenceEdit")
            ->setPlainText(QString::fromUtf8(LicenceText::sealed(payload, key.sign(payload))));
        driver.press("registerButton");
        QVERIFY(!program.isBannerShown() && ksGlobalData::instance()->registered);
        program.window.reset();
        program.start();
        QVERIFY2(!program.isBannerShown(), "the licence is found at the next start");
    }
};

QTEST_MAIN(SettingsInUseTest)
#include "tst_settingsinuse.moc"
