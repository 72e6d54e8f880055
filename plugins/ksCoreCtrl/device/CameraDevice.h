#pragma once

#include <valvecell/ICameraFeatures.h>

#include <QImage>
#include <QVariantMap>

#include <atomic>
#include <chrono>

/// Who a device says that it is; empty texts where it says nothing.
struct DeviceIdentity
{
    QString vendor;
    QString model;
    QString serial;
    QString userName; ///< that somebody gave it
    QString address;  ///< network address, or device path
};

/// What a device has to do for one capture.
struct DeviceRequest
{
    std::chrono::steady_clock::time_point asked; ///< the exposure has to begin after this
    std::chrono::milliseconds limit;             ///< from the call on
    const std::atomic<bool>& cancelled;          ///< set from another thread; to be looked at every 100 ms at least
};

/// What became of it.
struct DeviceShot
{
    enum class End {
        Image,      ///< whole, exposed after it was asked for
        Incomplete, ///< parts were missing; the device is well
        Unusable,   ///< it cannot be made an image; the device is well
        Late,       ///< none came within the limit, though the device is well
        Lost,       ///< the device does not answer as it should and has to be opened anew
    };
    End end = End::Lost;
    QImage image;
    quint64 frame = 0; ///< the device's number of it
    QString problem;   ///< in the operator's language, with the remedy where there is one; empty with an image
};

/// One camera as its driver offers it. All operations are called from one thread, the camera's own, and may block it
/// for seconds; DeviceCamera answers in time all the same. No operation throws. Problems are sentences in the
/// operator's language that say what is wrong and what helps; an empty one means success.
///
/// A class derived from it also has what DeviceDriver.h names.
class CameraDevice
{
public:
    virtual ~CameraDevice() = default;

    /// Finds and opens the camera that the settings name, and puts settings, then features into force. What the camera
    /// has not, or cannot do quite as wanted, is left out and said by missingSettings() and warning(). On failure
    /// nothing stays open. Called again after close(), any number of times.
    virtual QString open(const QVariantMap& settings, const QVariantMap& features) = 0;
    /// Lets go of the camera, also of one that no longer answers, and then without waiting for it.
    virtual void close() = 0;
    /// Puts other settings into force. On failure the device is closed and opened anew.
    virtual QString apply(const QVariantMap& settings) = 0;

    virtual DeviceShot capture(const DeviceRequest& request) = 0;
    /// Called every second or so, while nothing is to do or right after a capture: whether the camera is still there.
    /// Never blocks for long.
    virtual QString check() = 0;

    // Of the open camera. These never ask it, and never block.
    virtual DeviceIdentity identity() const = 0;
    /// What the operator should know although it works.
    virtual QString warning() const { return {}; }
    /// See ICameraFeatures.
    virtual QMap<QString, QString> missingSettings() const { return {}; }
    /// Since open().
    virtual quint64 lostPackets() const { return 0; }
    virtual quint64 resentPackets() const { return 0; }

    /// The names of what the camera shows, in its own order; each is read by itself, so that a capture never waits for
    /// the whole list.
    virtual QStringList featureNames() = 0;
    virtual CameraFeature feature(const QString& name) = 0;
    virtual QString writeFeature(const QString& name, const QVariant& value) = 0;
};
