#pragma once

#include <valvecell/ICameraFeatures.h>
#include <valvecell/ICameraPreview.h>
#include <valvecell/ICameraSettings.h>

#include <optional>

struct DeviceIdentity;

/// What the cameras on network and bus have beyond Camera; see ICameraFeatures. GUI thread; all return at once.
class DeviceAccess
{
public:
    /// Of the device when it was open last.
    virtual DeviceIdentity identity() const = 0;
    /// Those that somebody wrote, by name, as they are written again at each opening.
    virtual QVariantMap features() const = 0;
    virtual QMap<QString, QString> missingSettings() const = 0;
    virtual void readFeatures(ICameraFeatures::FeaturesCallback callback) = 0;
    /// When the callback comes without an error, features() holds the value.
    virtual void writeFeature(const QString& name, const QVariant& value,
                              ICameraFeatures::WrittenCallback callback) = 0;

protected:
    ~DeviceAccess() = default;
};

/// One camera of the core control, made by type code in CameraFactory.cpp.
///
/// Threads: all operations are called from the GUI thread and return at once, close() excepted. Images and events go to
/// CameraEvents from any thread.
class Camera
{
public:
    virtual ~Camera() = default;

    /// Gets ready to capture. A camera that cannot says so in its status.
    virtual void open() = 0;
    /// Ends the capture in hand, refuses the triggers that wait, and sends nothing more once it returned.
    virtual void close() = 0;

    /// Captures one image; queued when the camera is busy. Answered exactly once through CameraEvents, at once when the
    /// camera cannot.
    virtual void trigger(std::optional<quint64> number) = 0;
    /// Captures one image for the callback alone, once no trigger waits; false when it cannot.
    virtual bool preview(ICameraPreview::Callback callback) = 0;

    virtual CameraStatus status() const = 0;
    virtual CameraStatistics statistics() const = 0;
    virtual QVariantMap settings() const = 0;
    /// Whether apply() would take these settings; if not, `error` says which is wrong and why.
    virtual bool accepts(const QVariantMap& settings, QString* error) const = 0;
    /// Puts accepted settings into force, from the next capture on.
    virtual void apply(const QVariantMap& settings) = 0;

    /// Null for a camera that is no device.
    virtual DeviceAccess* device() { return nullptr; }
};
