#include "WindowDriver.h"
#include "config/AccessPolicy.h"
#include "config/ksGlobalData.h"
#include "db/log/LogLine.h"
#include "dialogs/cameras/QCameraManagerUI.h"
#include "dialogs/cameras/QCameraSettingsUI.h"
#include "dialogs/devices/QDeviceManagerUI.h"
#include "dialogs/registration/QCryptokeyUI.h"
#include "dialogs/settings/QSystemSettingUI.h"
#include "licence/Licence.h"
#include "licence/RsaKey.h"
#include "look/LanguageSwitch.h"
#include "panels/OutcomeBand.h"
#include "panels/ReadoutTile.h"
#include "platform/PseudoTerminal.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QTableWidget>

namespace {

QStringList s_logged;

void keepLine(int, const char* message, int length)
{
    s_logged << QString::fromUtf8(message, length);
}

QImage grayPicture()
{
    QImage image(640, 480, QImage::Format_Grayscale8);
    image.fill(90);
    return image;
}

} // namespace

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
        const auto isLocked = [&program] {
            return program.window->findChild<QAction*>("actionSystem")->property("locked").toBool();
        };
        QVERIFY(isLocked());
        program.createAdministrator();
        QVERIFY(!isLocked());
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
        Table::of<QByteArray, bool>({{"missing", "", false},
                                     {"off", "{\"engineer_only\": false}", false},
                                     {"no truth value", "{\"engineer_only\": \"no\"}", true},
                                     {"emptied", "{}", true},
                                     {"cut off", "{\"engineer_only\": fal", true}});
    }
    void spoiledPolicyRestricts()
    {
        const auto [file, restricted] = Table::row<QByteArray, bool>();
        const TempHome home;
        if (!file.isEmpty())
            home.write("/user/access.json", file);
        AccessPolicy policy;
        policy.load();
        QCOMPARE(policy.engineerOnly, restricted);
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
        QTRY_VERIFY(!driver.text("codeEdit").isEmpty());
        const QDate today = QDate::currentDate();
        const Licence licence{"演示", driver.text("codeEdit"), 2, today, today.addDays(40)};
        const QByteArray payload = LicenceText::payload(licence);
        driver.get<QPlainTextEdit>("licenceEdit")
            ->setPlainText(QString::fromUtf8(LicenceText::sealed(payload, key.sign(payload))));
        driver.press("registerButton");
        QVERIFY(!program.isBannerShown() && ksGlobalData::instance()->registered);
        program.window.reset();
        program.start();
        QTRY_VERIFY2(!program.isBannerShown(), "the licence is found at the next start");
    }

    void everyBundledModuleShowsItsFileAndVersion()
    {
        Program program;
        program.start();
        program.act("actionDevice");
        const DialogDriver hand(*program.open<QDeviceManagerUI>("QDeviceManagerUI"));
        auto* modules = hand.get<QTableWidget>("modules");
        QCOMPARE(modules->rowCount(), 5);
        for (int row = 0; row < 5; ++row) {
            QCOMPARE(modules->item(row, 1)->text(), "正常");
            QVERIFY2(modules->item(row, 2)->text().contains('.'), qPrintable(modules->item(row, 0)->text()));
            QVERIFY(QFile::exists(modules->item(row, 3)->text()));
        }
        QCOMPARE(hand.text<QLabel>("stateLabel"), "未打开");
    }

    void cameraSettingsAreLoggedAndCloseWithTheirUser()
    {
        Program program;
        program.home.write("/user/access.json", "{\"engineer_only\": true}");
        program.start();
        QDir().mkpath(program.home.path("/images/1"));
        QVERIFY(grayPicture().save(program.home.path("/images/1/a.bmp")));
        program.act("actionCamera");
        program.createAdministrator();
        program.act("actionCamera");
        const QPointer<QDialog> cameras = program.open("QCameraManagerUI");
        const DialogDriver manager(*cameras);
        manager.press("settingsButton");
        program.act("actionCamera");
        manager.press("settingsButton");
        QCOMPARE(program.window->findChildren<QCameraSettingsUI*>().size(), 1);
        const QPointer<QDialog> one = program.open("QCameraSettingsUI");
        const DialogDriver settings(*one);
        settings.type("exposure_ms", "3");
        SystemLog::setOutput(keepLine);
        settings.press("applyButton");
        SystemLog::setOutput(nullptr);
        QCOMPARE(s_logged.filter("camera/cam1/exposure_ms").size(), 1);
        QVERIFY2(s_logged.last().endsWith("用户:boss"), qPrintable(s_logged.last()));
        settings.press("liveButton");
        const BoxPresser yes(QMessageBox::Yes);
        program.act("main_Login_action"); // logs out, with a picture on its way
        QVERIFY(!one && !cameras);
    }

    void answerReachesTheTilesOfItsStation()
    {
        Program program;
        program.home.write("/images/2/a.bmp", {});
        QVERIFY(grayPicture().save(program.home.path("/images/2/a.bmp")));
        program.home.write("/images/1/none.txt", {});
        program.start();
        program.window->onSelModel(2, "auto");
        SComFrame trigger;
        trigger.command = 'P';
        trigger.data[0] = 6;
        emit program.window->sgRecvData(trigger);
        const auto tile = [&](const char* station, const char* name) {
            return program.window->findChild<QWidget*>(station)->findChild<ReadoutTile*>(name);
        };
        QTRY_COMPARE(tile("stationView2", "notFoundTile")->value(), QString("1"));
        const auto lamp = [&](const char* station) {
            return program.window->findChild<QWidget*>(station)->findChild<OutcomeBand*>()->content().lamp;
        };
        QTRY_COMPARE(lamp("stationView2"), Lamp::NotFound);
        QCOMPARE(tile("stationView1", "notFoundTile")->value(), QString("0"));
        QCOMPARE(lamp("stationView1"), Lamp::Waiting);
    }
};

QTEST_MAIN(SettingsInUseTest)
#include "tst_settingsinuse.moc"
