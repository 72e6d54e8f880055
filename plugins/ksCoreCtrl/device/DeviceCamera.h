#pragma once

#include "../Camera.h"
#include "../CameraSettings.h"
#include "CameraDevice.h"
#include "CaptureTally.h"
#include "FeatureJob.h"

#include <QCoreApplication>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

struct CameraConfig;
class CameraEvents;

/// When a DeviceCamera does things by itself.
struct DevicePace
{
    std::chrono::milliseconds check{1000};     ///< between two looks at an idle camera
    std::chrono::milliseconds firstPause{250}; ///< before a lost camera is opened anew; doubles with each failure
    std::chrono::milliseconds longestPause{2000};
    std::chrono::milliseconds grace{
        100}; ///< that a device may stay beyond a capture's limit until others answer for it
};

/// A camera on a network or bus, driven through a CameraDevice.
///
/// The camera's thread alone calls the device: it opens it, captures, triggers before features before previews, and
/// opens a lost one anew until it is back. Calls to a device may hang for longer than a trigger can wait. So a second
/// thread answers for it: a capture that is overdue, and all that wait behind it, end with a problem, and what the
/// device may still bring goes to nobody. While the camera is lost, captures are answered at once.
///
/// States: Uninitialized while a setting is wrong, Initialized while the camera is not there, else Running.
class DeviceCamera final : public Camera, private DeviceAccess
{
    Q_DECLARE_TR_FUNCTIONS(DeviceCamera)

public:
    static constexpr size_t maxWaiting = 16; ///< triggers; a further one is dropped and reported
    static constexpr size_t maxPreviews = 4;

    /// "timeout_ms": how long an image may take beyond its exposure; every device has this parameter.
    static CameraParameter timeLimit();

    DeviceCamera(const CameraConfig& config, CameraEvents& events, CameraSettings::Parameters parameters,
                 std::unique_ptr<CameraDevice> device, DevicePace pace = {});
    ~DeviceCamera() override;

    void open() override;
    /// The capture in hand ends without an image.
    void close() override;
    void trigger(std::optional<quint64> number) override;
    bool preview(ICameraPreview::Callback callback) override;
    CameraStatus status() const override;
    CameraStatistics statistics() const override;
    QVariantMap settings() const override;
    bool accepts(const QVariantMap& settings, QString* error) const override;
    void apply(const QVariantMap& settings) override;
    DeviceAccess* device() override { return this; }

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;
    /// One image that somebody waits for.
    struct Order
    {
        Clock::time_point asked;
        std::function<void(const QImage& image, const char* topic, const QString& problem)> done;
    };
    enum class Link { Unset, Opening, Open, Lost };

    DeviceIdentity identity() const override;
    QVariantMap features() const override;
    QMap<QString, QString> missingSettings() const override;
    void readFeatures(ICameraFeatures::FeaturesCallback callback) override;
    void writeFeature(const QString& name, const QVariant& value, ICameraFeatures::WrittenCallback callback) override;

    /// The camera's thread. Each step is entered and left under the lock, and sets it free while it waits, calls the
    /// device or calls back.
    void run();
    void step(Lock& lock);
    void connect(Lock& lock);
    void noteOpen();
    void takeSettings(Lock& lock);
    void capture(Lock& lock, std::deque<Order>& orders);
    void note(const DeviceShot& shot);
    void stepFeatures(Lock& lock);
    void check(Lock& lock);
    bool hasWork() const; ///< under the lock
    /// The watching thread.
    void watch();
    std::optional<Clock::time_point> nextOverdue() const; ///< under the lock

    void lose(Lock& lock, const QString& problem);
    /// Ends all orders and feature jobs that there are.
    void refuseAll(Lock& lock, const char* topic, const QString& problem);
    void addJob(FeatureJob job);
    std::chrono::milliseconds limit() const; ///< of one capture; under the lock

    const QString m_key;
    CameraEvents& m_events;
    const DevicePace m_pace;
    const std::unique_ptr<CameraDevice> m_device; ///< the camera's thread alone
    bool m_deviceOpen = false;                    ///< likewise
    std::chrono::milliseconds m_pause{0};         ///< likewise; before the next try to open
    Clock::time_point m_checked;                  ///< likewise; when the device was looked at last
    std::thread m_thread;
    std::thread m_watcher;
    std::atomic<bool> m_cancelled{false};

    mutable std::mutex m_mutex; // protects everything below
    std::condition_variable m_wake;
    std::condition_variable m_watch;
    bool m_stopping = false;
    bool m_settingsDue = false; ///< the device has to hear of changed ones
    Link m_link = Link::Unset;
    CameraSettings m_settings;
    QVariantMap m_features; ///< by name, to be written at each opening
    std::deque<Order> m_triggers;
    std::deque<Order> m_previews;
    std::deque<FeatureJob> m_jobs;
    std::optional<Order> m_inHand; ///< empty during a capture: it was answered without the device
    Clock::time_point m_overdue;   ///< when the order in hand is to be answered at the latest
    Clock::time_point m_freeSince; ///< when the camera's thread was through with the order before
    CaptureTally m_tally;
    CameraStatus m_status;
    DeviceIdentity m_identity;
    QString m_warning;
    QMap<QString, QString> m_missing;
};
