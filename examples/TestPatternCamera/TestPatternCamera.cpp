#include "TestPatternCamera.h"

#include "CameraList.h"

#include <valvecell/Export.h>

#include <algorithm>

QStringList TestPatternCamera::cameraKeys()
{
    return m_keys;
}

void TestPatternCamera::setImageCallback(ImageCallback callback)
{
    m_image.set(std::move(callback));
}

void TestPatternCamera::setNotificationCallback(NotificationCallback callback)
{
    m_notify.set(std::move(callback));
}

void TestPatternCamera::start()
{
    const auto entries = CameraList::read();
    for (const CameraList::Entry& entry : entries) {
        m_keys.append(entry.key);
        m_cameras.push_back(std::make_unique<PatternCamera>(
            entry.key, entry.settings, [this](const QString& key, const QImage& image) { deliver(key, image); }));
    }
}

void TestPatternCamera::stop()
{
    // All are asked before the first is waited for, so that stopping takes as long as the slowest camera alone.
    for (const auto& camera : m_cameras)
        camera->requestStop();
    m_cameras.clear();
    m_image.set({});
    m_notify.set({});
}

void TestPatternCamera::trigger(const QStringList& cameraKeys)
{
    for (const QString& key : cameraKeys) {
        if (PatternCamera* known = camera(key))
            known->trigger();
        else
            m_notify(QStringLiteral("unknownCamera"), key);
    }
}

void* TestPatternCamera::extension(const char* id)
{
    if (qstrcmp(id, ICameraSettings::id) == 0)
        return static_cast<ICameraSettings*>(this);
    return qstrcmp(id, ICameraParameters::id) == 0 ? static_cast<ICameraParameters*>(this) : nullptr;
}

CameraStatus TestPatternCamera::status(const QString& cameraKey)
{
    return camera(cameraKey) ? CameraStatus{CameraType::Virtual, CameraState::Running, PixelFormat::Gray8, {}, {}}
                             : CameraStatus();
}

QVariantMap TestPatternCamera::settings(const QString& cameraKey)
{
    const PatternCamera* known = camera(cameraKey);
    return known ? known->settings() : QVariantMap();
}

/// The file first: when it cannot be written, the camera has not changed.
bool TestPatternCamera::applySettings(const QString& cameraKey, const QVariantMap& settings, QString* error)
{
    QString problem = CameraParameters::problem(cameraKey, CameraList::parameters(), settings);
    if (!problem.isEmpty() || !CameraList::store(cameraKey, settings, &problem)) {
        if (error)
            *error = problem;
        return false;
    }
    if (PatternCamera* known = camera(cameraKey))
        known->apply(settings);
    return true;
}

QVector<CameraParameter> TestPatternCamera::parameters(CameraType, const QString&)
{
    return CameraList::parameters(); // all cameras are alike
}

PatternCamera* TestPatternCamera::camera(const QString& key) const
{
    const auto found =
        std::find_if(m_cameras.begin(), m_cameras.end(), [&key](const auto& camera) { return camera->key() == key; });
    return found == m_cameras.end() ? nullptr : found->get();
}

/// On a camera's thread: hands the image over and does nothing else with it.
void TestPatternCamera::deliver(const QString& cameraKey, const QImage& image)
{
    if (image.isNull())
        m_notify(QStringLiteral("noImage"), cameraKey);
    else
        m_image(cameraKey, image);
}

VALVECELL_MODULE_EXPORT ICoreCtrl* Lib_CoreCtrl_Init(void*)
{
    return new TestPatternCamera;
}

VALVECELL_MODULE_EXPORT void Lib_CoreCtrl_Free(ICoreCtrl* instance)
{
    delete instance;
}
