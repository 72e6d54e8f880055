#pragma once

#include "common/AuditChange.h"

#include <QMap>
#include <QObject>
#include <QPointer>

class ISerialPort;
class ModuleSet;
class QCameraManagerUI;
class QCameraSettingsUI;
class QDeviceManagerUI;
class QMainWindow;

/// The actions for what the cell is made of: cameras and modules. GUI thread.
class DeviceActions : public QObject
{
    Q_OBJECT

public:
    /// Both outlive the actions. The dialogs are children of `window`, made when they are first wanted.
    DeviceActions(QMainWindow* window, const ModuleSet& modules);

    /// The port whose state is shown; null once it goes.
    void setSerialPort(ISerialPort* port) { m_port = port; }

public slots:
    /// Does what the action of that object name is for; an unknown name does nothing.
    void trigger(const QString& name);
    /// Closes the dialogs that change cameras; what was not applied is gone.
    void closeCameras();
    /// Ends the dialogs; to be called before the modules go.
    void close();

signals:
    /// Cameras or their settings were changed and stored.
    void changed(const AuditChanges& changes);

private:
    void openCameras();
    void openCamera(const QString& key);
    void openDevices();

    QMainWindow* m_window;
    const ModuleSet& m_modules;
    ISerialPort* m_port = nullptr;
    QPointer<QCameraManagerUI> m_cameras;
    QPointer<QDeviceManagerUI> m_devices;
    QMap<QString, QPointer<QCameraSettingsUI>> m_settings; ///< by camera key
};
