#include "host/DeviceActions.h"

#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "dialogs/cameras/QCameraManagerUI.h"
#include "dialogs/cameras/QCameraSettingsUI.h"
#include "dialogs/devices/QDeviceManagerUI.h"
#include "host/ShowDialog.h"
#include "modules/ModuleSet.h"

#include <QMainWindow>

#include <utility>

DeviceActions::DeviceActions(QMainWindow* window, const ModuleSet& modules)
    : QObject(window)
    , m_window(window)
    , m_modules(modules)
{
}

void DeviceActions::trigger(const QString& name)
{
    if (name == QLatin1String("actionCamera"))
        openCameras();
    else if (name == QLatin1String("actionDevice"))
        openDevices();
}

void DeviceActions::openCameras()
{
    ICoreCtrl* core = m_modules.coreCtrl();
    if (!core)
        return;
    if (!m_cameras) {
        m_cameras = new QCameraManagerUI(*core, *ksGlobalConfig::instance(), m_window);
        connect(m_cameras, &QCameraManagerUI::camerasApplied, this, &DeviceActions::changed);
        connect(m_cameras, &QCameraManagerUI::settingsWanted, this, &DeviceActions::openCamera);
    }
    showDialog(m_cameras);
}

void DeviceActions::openCamera(const QString& key)
{
    ICoreCtrl* core = m_modules.coreCtrl();
    if (!core)
        return;
    QPointer<QCameraSettingsUI>& dialog = m_settings[key];
    if (!dialog) {
        dialog = new QCameraSettingsUI(*core, *ksGlobalConfig::instance(), key, m_window);
        dialog->setAttribute(Qt::WA_DeleteOnClose); // there may be many cameras, and each dialog holds a picture
        connect(dialog, &QCameraSettingsUI::settingsApplied, this, &DeviceActions::changed);
    }
    showDialog(dialog);
}

void DeviceActions::openDevices()
{
    if (!m_devices)
        m_devices = new QDeviceManagerUI({[this] { return m_modules.report(); }, [this] { return m_port; }},
                                         *ksSysConfig::instance(), m_window);
    showDialog(m_devices);
}

void DeviceActions::closeCameras()
{
    delete m_cameras;
    const auto settings = std::exchange(m_settings, {});
    for (const auto& dialog : settings)
        delete dialog;
}

void DeviceActions::close()
{
    closeCameras();
    delete m_devices;
    m_port = nullptr;
}
