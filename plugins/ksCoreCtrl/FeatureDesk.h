#pragma once

#include <valvecell/ICameraFeatures.h>

#include <QCoreApplication>

class Camera;
class CameraFile;
class DeviceAccess;

/// The features of all cameras by key; those that are written are stored as "features" of the camera's entry.
class FeatureDesk final : public ICameraFeatures
{
    Q_DECLARE_TR_FUNCTIONS(FeatureDesk)

public:
    /// Null for a key that no camera has.
    using Find = std::function<Camera*(const QString& key)>;

    FeatureDesk(Find find, CameraFile& file);

    void readFeatures(const QString& cameraKey, FeaturesCallback callback) override;
    void writeFeature(const QString& cameraKey, const QString& name, const QVariant& value,
                      WrittenCallback callback) override;
    QMap<QString, QString> missingSettings(const QString& cameraKey) override;
    CameraStatistics statistics(const QString& cameraKey) override;

private:
    /// Null, and why, for a camera without features.
    DeviceAccess* device(const QString& key, QString* problem) const;

    const Find m_find;
    CameraFile& m_file;
};
