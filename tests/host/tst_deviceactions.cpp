#include "WindowDriver.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/cameras/QCameraManagerUI.h"
#include "dialogs/cameras/QCameraSettingsUI.h"
#include "dialogs/devices/QDeviceManagerUI.h"
#include "host/DeviceActions.h"
#include "modules/ModuleSet.h"

#include <valvecell/ISerialPort.h>
#include <valvecell/IUserCtrl.h>

#include <QMainWindow>
#include <QTableWidget>

namespace {

/// A window with the real modules.
struct Cell
{
    TempHome home;
    QMainWindow window;
    ModuleSet modules;
    DeviceActions* actions = new DeviceActions(&window, modules);
    std::unique_ptr<ISerialPort> port;
    std::unique_ptr<IUserCtrl> users;

    Cell()
    {
        writeStations(home, 2);
        QImage image(64, 48, QImage::Format_Grayscale8);
        image.fill(90);
        image.save(home.path("/images/1/a.bmp"));
        const QString fatal = modules.start([](const QString&, const QImage&) {});
        if (!fatal.isEmpty())
            qFatal("%s", qPrintable(fatal));
        port.reset(modules.createSerialPort());
        users.reset(modules.createUserCtrl());
        actions->setSerialPort(port.get());
    }

    template <typename Dialog>
    Dialog& open(const char* action)
    {
        actions->trigger(QLatin1String(action));
        auto* dialog = window.findChild<Dialog*>();
        if (!dialog || !dialog->isVisible())
            qFatal("%s shows nothing", action);
        return *dialog;
    }
};

} // namespace

class DeviceActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyBundledModuleTellsItsFileAndVersion()
    {
        Cell cell;
        const DialogDriver hand(cell.open<QDeviceManagerUI>("actionDevice"));
        auto* modules = hand.get<QTableWidget>("modules");
        QCOMPARE(modules->rowCount(), 5);
        for (int row = 0; row < 5; ++row) {
            QCOMPARE(modules->item(row, 1)->text(), "正常");
            QVERIFY2(modules->item(row, 2)->text().contains('.'), qPrintable(modules->item(row, 0)->text()));
            QVERIFY(QFile::exists(modules->item(row, 3)->text()));
        }
        QCOMPARE(hand.text<QLabel>("stateLabel"), "未打开");
    }

    void cameraSettingsAreToldAndCloseWithTheirUser()
    {
        Cell cell;
        QStringList told;
        connect(cell.actions, &DeviceActions::changed, [&](const AuditChanges& changes) {
            for (const AuditChange& change : changes)
                told << change.name;
        });
        const DialogDriver manager(cell.open<QCameraManagerUI>("actionCamera"));
        manager.press("settingsButton");
        manager.press("settingsButton");
        QCOMPARE(cell.window.findChildren<QCameraSettingsUI*>().size(), 1);
        const DialogDriver settings(*cell.window.findChild<QCameraSettingsUI*>());
        settings.type("exposure_ms", "3");
        settings.press("applyButton");
        QCOMPARE(told, QStringList("camera/cam1/exposure_ms"));
        settings.press("liveButton");
        cell.actions->closeCameras(); // with a picture on its way
        QVERIFY(!cell.window.findChild<QCameraSettingsUI*>() && !cell.window.findChild<QCameraManagerUI*>());
        cell.open<QCameraManagerUI>("actionCamera");
        cell.actions->close();
        cell.modules.stop();
    }
};

QTEST_MAIN(DeviceActionsTest)
#include "tst_deviceactions.moc"
