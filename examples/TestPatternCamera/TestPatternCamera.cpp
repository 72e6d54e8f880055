#include "TestPatternCamera.h"

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
    const auto entries = readCameraList();
    for (const CameraEntry& entry : entries) {
        m_keys.append(entry.key);
        m_cameras.push_back(std::make_unique<PatternCamera>(
            entry, [this](const QString& key, const QImage& image) { deliver(key, image); }));
    }
}

void TestPatternCamera::stop()
{
    // All are told before the first is waited for, so that stopping takes as long as the slowest camera alone.
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
