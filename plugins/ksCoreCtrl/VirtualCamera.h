#pragma once

#include "Camera.h"
#include "CameraSettings.h"
#include "ImageFolder.h"
#include "device/CaptureTally.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

struct CameraConfig;
class CameraEvents;

/// Delivers the images of a folder, one a trigger, each after exposure and transfer time.
///
/// A thread of its own reads the next image as soon as one is delivered, so that the answer to a trigger takes just the
/// configured time; it holds no more than that image. Triggers that come meanwhile are captured one after the other.
/// close() delivers the capture in hand, or else the first that waits, at once instead of waiting its time out.
///
/// Previews go through the folder on their own, so that the triggers' images stay in their order, and wait while there
/// is a trigger.
///
/// States: Uninitialized while a setting is wrong or the folder is missing, Opened while the folder holds no image that
/// can be read, else Running. A trigger looks for images that came since, so the first two mend themselves.
class VirtualCamera final : public Camera
{
    Q_DECLARE_TR_FUNCTIONS(VirtualCamera)

public:
    static constexpr CameraType type = CameraType::Virtual;
    static QVector<CameraParameter> parameters();

    /// Triggers that may wait; a further one is dropped and reported.
    static constexpr size_t maxWaiting = 16;
    /// Previews that may wait.
    static constexpr size_t maxPreviews = 4;

    VirtualCamera(const CameraConfig& config, CameraEvents& events);
    ~VirtualCamera() override;

    void open() override;
    void close() override;
    void trigger(std::optional<quint64> number) override;
    bool preview(ICameraPreview::Callback callback) override;
    CameraStatus status() const override;
    CameraStatistics statistics() const override;
    QVariantMap settings() const override;
    bool accepts(const QVariantMap& settings, QString* error) const override;
    void apply(const QVariantMap& settings) override;

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;
    struct Trigger
    {
        Clock::time_point at;
        std::optional<quint64> number;
    };

    /// The thread. Each of the steps below is entered and left under the lock, and sets it free while it waits, reads
    /// or calls back.
    void run();
    void capture(Lock& lock);
    /// What the status says of the last image.
    void noteImage(const QImage& image);
    /// Without the lock: the program may ask for the status from within its callback.
    void deliver(std::optional<quint64> number);
    void readAhead(Lock& lock);
    void capturePreview(Lock& lock);
    /// Exposure and transfer, under the lock.
    Clock::duration delay() const;
    bool hasWork() const;       ///< under the lock
    QString folderPath() const; ///< full; empty when no folder is set; under the lock

    const QString m_key;
    CameraEvents& m_events;
    std::thread m_thread;

    // The thread's own.
    ImageFolder m_images;
    ImageFolder::Shot m_ahead;
    ImageFolder m_previewImages;
    bool m_readAheadDue = false;

    mutable std::mutex m_mutex; // protects everything below
    std::condition_variable m_wake;
    bool m_stopping = false;
    bool m_capturing = false;
    CameraSettings m_settings;
    QString m_folder; ///< full path; empty while a setting is wrong
    std::deque<Trigger> m_triggers;
    std::deque<ICameraPreview::Callback> m_previews;
    Clock::time_point m_freeAt; ///< when the capture before is through
    CaptureTally m_tally;
    CameraStatus m_status;
};
