#pragma once

#include "PatternCamera.h"
#include "SharedCallback.h"

#include <valvecell/ICameraParameters.h>
#include <valvecell/ICameraSettings.h>
#include <valvecell/ICoreCtrl.h>

#include <memory>
#include <vector>

/// A core control whose cameras see a moving test pattern: one for each entry of "user/camera.json". By two optional
/// interfaces the program's dialogs show and change the cameras' settings.
class TestPatternCamera final : public ICoreCtrl, public ICameraSettings, public ICameraParameters
{
public:
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

    QVector<CameraParameter> parameters(CameraType type, const QString& cameraKey) override;

private:
    PatternCamera* camera(const QString& key) const;
    void deliver(const QString& cameraKey, const QImage& image);

    // Before the cameras, whose threads call them until the cameras are gone.
    SharedCallback<QString, QImage> m_image;
    SharedCallback<QString, QVariant> m_notify;

    QStringList m_keys;
    std::vector<std::unique_ptr<PatternCamera>> m_cameras; ///< empty again after stop()
};
