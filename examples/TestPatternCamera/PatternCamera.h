#pragma once

#include <QImage>
#include <QVariantMap>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// One camera: a thread that waits for triggers and answers each with the next image of a test pattern.
class PatternCamera
{
public:
    /// Receives each image on the camera's thread.
    using Deliver = std::function<void(const QString& cameraKey, const QImage& image)>;

    /// \param settings right ones, by the names of CameraList::parameters()
    PatternCamera(QString key, const QVariantMap& settings, Deliver deliver);
    /// Waits for the capture in hand; nothing is delivered afterwards.
    ~PatternCamera();
    Q_DISABLE_COPY(PatternCamera)

    const QString& key() const { return m_key; }
    QVariantMap settings() const;
    /// Takes over some settings, from the next image on.
    void apply(const QVariantMap& settings);

    /// Asks for one image. Returns at once; a trigger that finds the camera busy waits for its turn.
    void trigger();

    /// Asks the camera to end: the capture in hand is delivered at once, waiting triggers are dropped. Does not wait.
    void requestStop();

private:
    using Lock = std::unique_lock<std::mutex>;

    void run();

    const QString m_key;
    const Deliver m_deliver;
    mutable std::mutex m_mutex; // protects the next four
    std::condition_variable m_changed;
    QVariantMap m_settings;
    int m_waiting = 0;
    bool m_stopping = false;
    std::thread m_thread; ///< last, for it uses all of the above from its first moment
};

/// A bright disc, and in it a dark one that goes around by 15 degrees an image, counter-clockwise as seen on the
/// screen, and stands at the right in image 0. Grayscale, 8 bits; null when there is no memory for it. Any thread.
QImage testPattern(const QSize& size, int number);
