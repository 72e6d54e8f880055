#pragma once

#include "../CameraDevice.h"
#include "V4l2Bus.h"
#include "V4l2Controls.h"
#include "V4l2Format.h"
#include "V4l2Stream.h"

#include <QCoreApplication>

#include <memory>

/// A USB camera, driven through Video4Linux.
///
/// It streams all the time, since such cameras have no trigger; a capture takes the first whole frame whose exposure
/// surely began after it was asked for. The setting "device" names the camera by serial number, port, model or path;
/// one that comes back under another path is found again by its serial number.
class V4l2Device final : public CameraDevice
{
    Q_DECLARE_TR_FUNCTIONS(V4l2Device)

public:
    static constexpr CameraType type = CameraType::Usb;
    static QVector<CameraParameter> parameters();
    static QVector<FoundCamera> find();

    /// `system` outlives the device.
    explicit V4l2Device(V4l2System& system = V4l2System::kernel());
    ~V4l2Device() override;

    QString open(const QVariantMap& settings, const QVariantMap& features) override;
    void close() override;
    QString apply(const QVariantMap& settings) override;
    DeviceShot capture(const DeviceRequest& request) override;
    QString check() override;

    DeviceIdentity identity() const override { return m_identity; }
    QString warning() const override;
    QMap<QString, QString> missingSettings() const override;
    /// Frames that came damaged: USB says no more.
    quint64 lostPackets() const override { return m_damaged; }

    QStringList featureNames() override;
    CameraFeature feature(const QString& name) override;
    QString writeFeature(const QString& name, const QVariant& value) override;

private:
    using Clock = V4l2Stream::Clock;

    QString openNode(const QString& wanted);
    QString openPath(const QString& path);
    QString startStream();
    void writeFeatures(const QVariantMap& features);
    void settle();
    DeviceShot nothingCame(const DeviceRequest& request, bool anyDamaged) const;

    V4l2System& m_system;
    int m_descriptor = -1;
    DeviceIdentity m_identity;
    QString m_openedAs; ///< what the settings called the camera of m_identity
    QVariantMap m_settings;
    QVariantMap m_features;
    V4l2Format m_format;
    std::unique_ptr<V4l2Controls> m_controls;
    std::unique_ptr<V4l2Stream> m_stream;
    QStringList m_featureWarnings;
    Clock::time_point m_settled; ///< frames that began before may have the settings before
    quint64 m_damaged = 0;
};
