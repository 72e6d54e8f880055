#pragma once

#include "../CameraDevice.h"
#include "AravisSettings.h"
#include "AravisStream.h"
#include "CameraClock.h"

#include <valvecell/ICameraDiscovery.h>

#include <QCoreApplication>

class AravisFeatures;

/// A GigE Vision or USB3 Vision camera.
///
/// The setting "device" names it: by its address it is opened at once; by serial number or user name it is looked for,
/// first where it was before. The library does not come back to a camera that it lost, so all is made anew by open().
///
/// A frame counts when its exposure began after the software trigger was sent; with a line, or of a camera that cannot
/// be triggered, after the capture was asked for. The exposure began no later than the frame's first packet came less
/// the exposure time, nor than the camera's own clock says. Cameras that send the first packet before the exposure is
/// over, or whose clock means something else, are known by their first triggered frame, and then judged by the arrival
/// alone.
class AravisDevice final : public CameraDevice
{
    Q_DECLARE_TR_FUNCTIONS(AravisDevice)

public:
    static constexpr CameraType type = CameraType::Gige;
    static QVector<CameraParameter> parameters() { return AravisSettings::parameters(); }
    static QVector<FoundCamera> find();

    AravisDevice();
    ~AravisDevice() override;

    QString open(const QVariantMap& settings, const QVariantMap& features) override;
    void close() override;
    QString apply(const QVariantMap& settings) override;
    DeviceShot capture(const DeviceRequest& request) override;
    QString check() override;

    DeviceIdentity identity() const override { return m_identity; }
    QString warning() const override { return m_warnings.join(QLatin1Char('\n')); }
    QMap<QString, QString> missingSettings() const override { return m_missing; }
    quint64 lostPackets() const override;
    quint64 resentPackets() const override;

    QStringList featureNames() override;
    CameraFeature feature(const QString& name) override;
    QString writeFeature(const QString& name, const QVariant& value) override;

private:
    using Clock = AravisStream::Clock;

    /// Fills in m_identity and m_id.
    QString locate(const QString& wanted);
    QString connect();
    /// Writes settings and features, and starts the stream.
    QString prepare();
    QString startStream();
    void stopStream();
    QString packetWarning();
    QString formatWarning();
    Clock::time_point exposed(const AravisStream::Frame& frame) const;
    DeviceShot shotOf(const AravisStream::Frame& frame);
    DeviceShot imageOf(ArvBuffer* buffer);
    DeviceShot nothingCame(const DeviceRequest& request, int tooEarly);
    QString incomplete(ArvBufferStatus status);
    ArvDevice* library() const { return arv_camera_get_device(m_camera.get()); }

    GObjectPtr<ArvCamera> m_camera;
    std::unique_ptr<AravisStream> m_stream;
    std::unique_ptr<AravisFeatures> m_reader;
    QVariantMap m_settings;
    QVariantMap m_features;
    AravisSettings::Trigger m_trigger = AravisSettings::Trigger::Software;
    DeviceIdentity m_identity;
    QString m_id; ///< by which the library opens a camera without an address
    QStringList m_warnings;
    QMap<QString, QString> m_missing;
    std::chrono::microseconds m_exposure{0};
    CameraClock m_clock;
    bool m_byArrival = false; ///< exposure time and camera's clock say nothing about when a frame began
    quint64 m_lastFrame = 0;
    std::shared_ptr<std::atomic<bool>> m_controlLost;
};
