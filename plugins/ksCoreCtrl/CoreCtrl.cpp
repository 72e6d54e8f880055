#include "CoreCtrl.h"

#include "CameraFactory.h"

#include <valvecell/Export.h>
#include <valvecell/HomeFiles.h>

CoreCtrl::CoreCtrl()
    : m_file(HomeFiles::home() + QStringLiteral("/user/camera.json"))
{
}

CoreCtrl::~CoreCtrl() = default;

QStringList CoreCtrl::cameraKeys()
{
    return m_keys;
}

void CoreCtrl::setImageCallback(ImageCallback callback)
{
    m_events.setImageCallback(std::move(callback));
}

void CoreCtrl::setNotificationCallback(NotificationCallback callback)
{
    m_events.setNotificationCallback(std::move(callback));
}

void CoreCtrl::start()
{
    const auto configs = m_file.read();
    for (const CameraConfig& config : configs) {
        m_keys.append(config.key);
        m_cameras.push_back(makeCamera(config, m_events));
        m_cameras.back()->open();
    }
}

void CoreCtrl::stop()
{
    for (const auto& camera : m_cameras)
        camera->close();
    m_events.setImageCallback({});
    m_events.setNotificationCallback({});
}

void CoreCtrl::trigger(const QStringList& cameraKeys)
{
    for (const QString& key : cameraKeys) {
        if (Camera* named = camera(key))
            named->trigger();
        else
            m_events.notify(Topics::unknownCamera, key, tr("没有名为“%1”的相机").arg(key));
    }
}

void* CoreCtrl::extension(const char* id)
{
    return qstrcmp(id, ICameraSettings::id) == 0 ? static_cast<ICameraSettings*>(this) : nullptr;
}

CameraStatus CoreCtrl::status(const QString& cameraKey)
{
    const Camera* named = camera(cameraKey);
    return named ? named->status() : CameraStatus();
}

QVariantMap CoreCtrl::settings(const QString& cameraKey)
{
    const Camera* named = camera(cameraKey);
    return named ? named->settings() : QVariantMap();
}

bool CoreCtrl::applySettings(const QString& cameraKey, const QVariantMap& settings, QString* error)
{
    QString reason = tr("没有名为“%1”的相机").arg(cameraKey);
    Camera* named = camera(cameraKey);
    const bool stored = named && named->accepts(settings, &reason) && m_file.store(cameraKey, settings, &reason);
    if (stored)
        named->apply(settings);
    else if (error)
        *error = reason;
    return stored;
}

Camera* CoreCtrl::camera(const QString& key) const
{
    const int index = m_keys.indexOf(key);
    return index < 0 ? nullptr : m_cameras[size_t(index)].get();
}

VALVECELL_MODULE_EXPORT ICoreCtrl* Lib_CoreCtrl_Init(void*)
{
    return new CoreCtrl;
}

VALVECELL_MODULE_EXPORT void Lib_CoreCtrl_Free(ICoreCtrl* instance)
{
    delete instance;
}
