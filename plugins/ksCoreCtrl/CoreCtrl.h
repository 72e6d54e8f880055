#pragma once

#include "Camera.h"
#include "CameraEvents.h"
#include "CameraFile.h"
#include "CameraSearch.h"
#include "FeatureDesk.h"

#include <valvecell/ICameraCapture.h>
#include <valvecell/ICameraList.h>
#include <valvecell/ICameraParameters.h>
#include <valvecell/ICameraPreview.h>
#include <valvecell/ICameraSettings.h>
#include <valvecell/ICoreCtrl.h>

#include <QCoreApplication>

#include <future>
#include <memory>
#include <vector>

/// The core control: the cameras of "user/camera.json", read by start().
class CoreCtrl final : public ICoreCtrl,
                       public ICameraSettings,
                       public ICameraParameters,
                       public ICameraList,
                       public ICameraCapture,
                       public ICameraPreview
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

    QVector<CameraParameter> parameters(CameraType type, const QString& cameraKey) override;

    QVector<CameraType> drivenTypes() override;
    QVariantMap defaultSettings(CameraType type) override;
    bool isNewKey(const QString& key, QString* error) override;
    bool changeCameras(const QVector<CameraEntry>& put, const QStringList& removed, QString* error) override;

    void setCaptureCallback(ICameraCapture::Callback callback) override;
    void capture(const QString& cameraKey, quint64 number) override;

    bool preview(const QString& cameraKey, ICameraPreview::Callback callback) override;

private:
    /// Null for a key that no camera has.
    Camera* camera(const QString& key) const;
    bool accepts(const CameraEntry& entry, QString* error);
    void bringIn(const CameraConfig& config);
    void triggerOne(const QString& key, std::optional<quint64> number);
    /// The camera goes on a thread of its own, which stop() waits for.
    void retire(std::unique_ptr<Camera> camera);

    CameraFile m_file;
    CameraEvents m_events;
    QStringList m_keys; ///< parallel to m_cameras
    std::vector<std::unique_ptr<Camera>> m_cameras;
    std::vector<std::future<void>> m_retired; ///< cameras that close on threads of their own
    FeatureDesk m_features;
    CameraSearch m_search;
};
