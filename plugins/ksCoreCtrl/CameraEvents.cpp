#include "CameraEvents.h"

#include <QVariantMap>

namespace {

template <typename Callback>
std::shared_ptr<const Callback> shared(Callback callback)
{
    return callback ? std::make_shared<const Callback>(std::move(callback)) : nullptr;
}

} // namespace

void CameraEvents::setImageCallback(ICoreCtrl::ImageCallback callback)
{
    auto next = shared(std::move(callback));
    std::lock_guard<std::mutex> lock(m_mutex);
    m_image.swap(next);
}

void CameraEvents::setNotificationCallback(ICoreCtrl::NotificationCallback callback)
{
    auto next = shared(std::move(callback));
    std::lock_guard<std::mutex> lock(m_mutex);
    m_notification.swap(next);
}

void CameraEvents::image(const QString& cameraKey, const QImage& image) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto callback = m_image;
    lock.unlock();
    if (callback)
        (*callback)(cameraKey, image);
}

void CameraEvents::notify(const char* topic, const QString& cameraKey, const QString& message) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto callback = m_notification;
    lock.unlock();
    if (callback)
        (*callback)(QString::fromLatin1(topic),
                    QVariantMap{{QStringLiteral("camera"), cameraKey}, {QStringLiteral("message"), message}});
}
