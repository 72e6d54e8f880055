#include "WindowDriver.h"
#include "db/log/LogLine.h"
#include "dialogs/cameras/QCameraManagerUI.h"
#include "dialogs/cameras/QCameraSettingsUI.h"
#include "dialogs/devices/QDeviceManagerUI.h"
#include "panels/ReadoutTile.h"

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

class DeviceActionsTest : public QObject
{
    Q_OBJECT

private slots:
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
        QTRY_COMPARE(tile("stationView2", "tipTile")->sign(), ReadoutTile::Bad);
        QCOMPARE(tile("stationView1", "notFoundTile")->value(), QString("0"));
        QCOMPARE(tile("stationView1", "tipTile")->sign(), ReadoutTile::Faint);
    }
};

QTEST_MAIN(DeviceActionsTest)
#include "tst_deviceactions.moc"
