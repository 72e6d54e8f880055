#include "FeatureDesk.h"

#include "Camera.h"
#include "CameraFile.h"

FeatureDesk::FeatureDesk(Find find, CameraFile& file)
    : m_find(std::move(find))
    , m_file(file)
{
}

DeviceAccess* FeatureDesk::device(const QString& key, QString* problem) const
{
    Camera* camera = m_find(key);
    DeviceAccess* device = camera ? camera->device() : nullptr;
    if (!device)
        *problem = camera ? tr("这种相机没有自己的参数列表") : tr("没有名为“%1”的相机").arg(key);
    return device;
}

void FeatureDesk::readFeatures(const QString& cameraKey, FeaturesCallback callback)
{
    QString problem;
    if (DeviceAccess* asked = device(cameraKey, &problem))
        asked->readFeatures(std::move(callback));
    else
        callback({}, problem);
}

/// Stored on the camera's thread, which ends before the camera and the file do.
void FeatureDesk::writeFeature(const QString& cameraKey, const QString& name, const QVariant& value,
                               WrittenCallback callback)
{
    QString problem;
    DeviceAccess* asked = device(cameraKey, &problem);
    if (!asked)
        return callback(problem);
    const bool stored = value.isValid();
    asked->writeFeature(name, value, [this, asked, cameraKey, stored, callback](const QString& error) {
        QString reason = error;
        if (error.isEmpty() && stored)
            m_file.store(cameraKey, {{QStringLiteral("features"), asked->features()}}, &reason);
        callback(reason);
    });
}

QMap<QString, QString> FeatureDesk::missingSettings(const QString& cameraKey)
{
    QString problem;
    const DeviceAccess* asked = device(cameraKey, &problem);
    return asked ? asked->missingSettings() : QMap<QString, QString>();
}

CameraStatistics FeatureDesk::statistics(const QString& cameraKey)
{
    const Camera* camera = m_find(cameraKey);
    return camera ? camera->statistics() : CameraStatistics();
}
