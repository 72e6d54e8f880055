#include "CameraEvents.h"

#include <QVariantMap>

namespace {

template <typename Callback>
std::shared_ptr<const Callback> shared(Callback callback)
{
    return callback ? std::make_shared<const Callback>(std::move(callback)) : nullptr;
}

/// Without the lock, since the program may call back from within.
template <typename Callback, typename... Arguments>
void call(std::mutex& mutex, const std::shared_ptr<const Callback>& member, const Arguments&... arguments)
{
    std::unique_lock<std::mutex> lock(mutex);
    const auto callback = member;
    lock.unlock();
    if (callback)
        (*callback)(arguments...);
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

void CameraEvents::setCaptureCallback(ICameraCapture::Callback callback)
{
    auto next = shared(std::move(callback));
    std::lock_guard<std::mutex> lock(m_mutex);
    m_capture.swap(next);
}

void CameraEvents::deliver(const QString& cameraKey, std::optional<quint64> number, const QImage& image) const
{
    if (number)
        call(m_mutex, m_capture, ICameraCapture::Outcome{cameraKey, *number, image, {}});
    else
        call(m_mutex, m_image, cameraKey, image);
}

void CameraEvents::refuse(const QString& cameraKey, std::optional<quint64> number, const char* topic,
                          const QString& problem) const
{
    if (number)
        call(m_mutex, m_capture, ICameraCapture::Outcome{cameraKey, *number, {}, problem});
    else
        notify(topic, cameraKey, problem);
}

void CameraEvents::notify(const char* topic, const QString& cameraKey, const QString& message) const
{
    call(m_mutex, m_notification, QString::fromLatin1(topic),
         QVariant(QVariantMap{{QStringLiteral("camera"), cameraKey}, {QStringLiteral("message"), message}}));
}
