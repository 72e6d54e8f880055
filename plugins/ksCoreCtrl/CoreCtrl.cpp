#include "CoreCtrl.h"

#include "CameraFactory.h"

#include <valvecell/Export.h>
#include <valvecell/HomeFiles.h>

CoreCtrl::CoreCtrl()
    : m_file(HomeFiles::home() + QStringLiteral("/user/camera.json"))
    , m_features([this](const QString& key) { return camera(key); }, m_file)
    , m_search([this](const auto& visit) {
        for (int i = 0; i < m_keys.size(); ++i)
            visit(m_keys[i], *m_cameras[size_t(i)]);
    })
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
    for (const CameraConfig& config : configs)
        bringIn(config);
}

/// Adds a camera, or puts it in the place of the one with its key.
void CoreCtrl::bringIn(const CameraConfig& config)
{
    int at = m_keys.indexOf(config.key);
    if (at < 0) {
        at = m_keys.size();
        m_keys.append(config.key);
        m_cameras.emplace_back();
    } else {
        retire(std::move(m_cameras[size_t(at)]));
    }
    m_cameras[size_t(at)] = makeCamera(config, m_events);
    m_cameras[size_t(at)]->open();
}

/// Closing waits for the camera's thread, which the caller must not.
void CoreCtrl::retire(std::unique_ptr<Camera> camera)
{
    const auto isDone = [](const std::future<void>& closing) {
        return closing.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    m_retired.erase(std::remove_if(m_retired.begin(), m_retired.end(), isDone), m_retired.end());
    m_retired.push_back(std::async(std::launch::async, [gone = std::move(camera)] { gone->close(); }));
}

/// All cameras close at the same time, since each may take a while. The callbacks go last, since a camera delivers its
/// capture in hand while it closes.
void CoreCtrl::stop()
{
    for (const auto& camera : m_cameras)
        m_retired.push_back(std::async(std::launch::async, [closing = camera.get()] { closing->close(); }));
    m_retired.clear(); // waits for each
    m_events.setImageCallback({});
    m_events.setNotificationCallback({});
    m_events.setCaptureCallback({});
}

void CoreCtrl::trigger(const QStringList& cameraKeys)
{
    for (const QString& key : cameraKeys)
        triggerOne(key, std::nullopt);
}

void CoreCtrl::setCaptureCallback(ICameraCapture::Callback callback)
{
    m_events.setCaptureCallback(std::move(callback));
}

void CoreCtrl::capture(const QString& cameraKey, quint64 number)
{
    triggerOne(cameraKey, number);
}

void CoreCtrl::triggerOne(const QString& key, std::optional<quint64> number)
{
    if (Camera* named = camera(key))
        named->trigger(number);
    else
        m_events.refuse(key, number, Topics::unknownCamera, tr("没有名为“%1”的相机").arg(key));
}

void* CoreCtrl::extension(const char* id)
{
    if (qstrcmp(id, ICameraSettings::id) == 0)
        return static_cast<ICameraSettings*>(this);
    if (qstrcmp(id, ICameraParameters::id) == 0)
        return static_cast<ICameraParameters*>(this);
    if (qstrcmp(id, ICameraList::id) == 0)
        return static_cast<ICameraList*>(this);
    if (qstrcmp(id, ICameraCapture::id) == 0)
        return static_cast<ICameraCapture*>(this);
    if (qstrcmp(id, ICameraFeatures::id) == 0)
        return static_cast<ICameraFeatures*>(&m_features);
    if (qstrcmp(id, ICameraDiscovery::id) == 0)
        return static_cast<ICameraDiscovery*>(&m_search);
    return qstrcmp(id, ICameraPreview::id) == 0 ? static_cast<ICameraPreview*>(this) : nullptr;
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

QVector<CameraParameter> CoreCtrl::parameters(CameraType type, const QString&)
{
    return parametersOf(type);
}

QVector<CameraType> CoreCtrl::drivenTypes()
{
    return ::drivenTypes();
}

QVariantMap CoreCtrl::defaultSettings(CameraType type)
{
    return CameraParameters::initialValues(parametersOf(type));
}

bool CoreCtrl::isNewKey(const QString& key, QString* error)
{
    QString reason = CameraFile::keyProblem(key);
    if (reason.isEmpty() && m_keys.contains(key))
        reason = tr("已有名为“%1”的相机").arg(key);
    if (error)
        *error = reason;
    return reason.isEmpty();
}

/// Whether the entry makes a camera that works, as far as the entry is concerned.
bool CoreCtrl::accepts(const CameraEntry& entry, QString* error)
{
    const bool known = m_keys.contains(entry.key);
    if (!known && !isNewKey(entry.key, error))
        return false;
    if (!::drivenTypes().contains(entry.type)) {
        *error = tr("没有相机类型 %1 的驱动程序").arg(int(entry.type));
        return false;
    }
    *error = CameraParameters::problem(entry.key, parametersOf(entry.type), entry.settings);
    return error->isEmpty();
}

/// The file first: when it cannot be written, no camera has changed.
bool CoreCtrl::changeCameras(const QVector<CameraEntry>& put, const QStringList& removed, QString* error)
{
    QString reason;
    QVector<CameraConfig> known;
    QVector<CameraConfig> added;
    bool good = true;
    for (const CameraEntry& entry : put) {
        good = good && accepts(entry, &reason);
        (m_keys.contains(entry.key) ? known : added).append({entry.key, int(entry.type), entry.settings});
    }
    if (!good || !m_file.change(&known, added, removed, &reason)) {
        if (error)
            *error = reason;
        return false;
    }
    for (const QString& key : removed) {
        const int at = m_keys.indexOf(key);
        if (at < 0)
            continue;
        retire(std::move(m_cameras[size_t(at)]));
        m_cameras.erase(m_cameras.begin() + at);
        m_keys.removeAt(at);
    }
    known += added;
    for (const CameraConfig& config : qAsConst(known))
        bringIn(config);
    return true;
}

bool CoreCtrl::preview(const QString& cameraKey, ICameraPreview::Callback callback)
{
    Camera* named = camera(cameraKey);
    return named && named->preview(std::move(callback));
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
