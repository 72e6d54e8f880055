#pragma once

#include "Camera.h"
#include "CameraEvents.h"
#include "CameraFile.h"

#include <valvecell/ICameraSettings.h>
#include <valvecell/ICoreCtrl.h>

#include <QCoreApplication>

#include <memory>
#include <vector>

/// The core control: the cameras of "user/camera.json", read by start().
class CoreCtrl final : public ICoreCtrl, public ICameraSettings
{
    Q_DECLARE_TR_FUNCTIONS(CoreCtrl)

public:
    CoreCtrl();
    ~CoreCtrl() override;

    QStringList cameraKeys() override;
    void setRequestCallback(RequestCallback) override {} // nothing to ask the program for
    void setImageCallback(ImageCallback callback) override;
    void setNotificationCallback(NotificationCallback callback) override;
    void start() override;
    void stop() override;
    void trigger(const QStringList& cameraKeys) override;
    void* extension(const char* id) override;

    CameraStatus status(const QString& cameraKey) override;
    QVariantMap settings(const QString& cameraKey) override;
    bool applySettings(const QString& cameraKey, const QVariantMap& settings, QString* error) override;

private:
    Camera* camera(const QString& key) const;

    CameraFile m_file;
    CameraEvents m_events;
    QStringList m_keys; ///< parallel to m_cameras
    std::vector<std::unique_ptr<Camera>> m_cameras;
};
