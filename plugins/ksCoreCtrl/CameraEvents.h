#pragma once

#include <valvecell/ICameraCapture.h>
#include <valvecell/ICoreCtrl.h>

#include <memory>
#include <mutex>
#include <optional>

/// What the module reports through the notification callback. The value is a map: "camera" its key, "message" a text in
/// the operator's language.
namespace Topics {
constexpr const char* unknownCamera = "unknownCamera";   ///< a trigger named a camera that is not configured
constexpr const char* cameraUnusable = "cameraUnusable"; ///< a trigger met a camera that cannot capture
constexpr const char* cameraLost = "cameraLost";         ///< a camera is not there any more, or does not answer
constexpr const char* cameraBack = "cameraBack";         ///< it is there again
constexpr const char* triggerDropped = "triggerDropped"; ///< too many triggers wait for this camera already
constexpr const char* imageSkipped = "imageSkipped";     ///< an image could not be read; the next was taken
constexpr const char* noImage = "noImage";               ///< a trigger stays without an image
} // namespace Topics

/// The program's callbacks, for cameras to call. All operations from any thread; a callback that is replaced while it
/// runs finishes.
class CameraEvents
{
public:
    void setImageCallback(ICoreCtrl::ImageCallback callback);
    void setNotificationCallback(ICoreCtrl::NotificationCallback callback);
    void setCaptureCallback(ICameraCapture::Callback callback);

    /// Ends one capture with its image. One with a number is ICameraCapture's, one without ICoreCtrl's.
    void deliver(const QString& cameraKey, std::optional<quint64> number, const QImage& image) const;
    /// Ends one capture without an image; the topic is for those without a number.
    void refuse(const QString& cameraKey, std::optional<quint64> number, const char* topic,
                const QString& problem) const;
    void notify(const char* topic, const QString& cameraKey, const QString& message) const;

private:
    mutable std::mutex m_mutex; // protects the three below
    std::shared_ptr<const ICoreCtrl::ImageCallback> m_image;
    std::shared_ptr<const ICoreCtrl::NotificationCallback> m_notification;
    std::shared_ptr<const ICameraCapture::Callback> m_capture;
};
