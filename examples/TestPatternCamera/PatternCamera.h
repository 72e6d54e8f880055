#pragma once

#include "CameraList.h"

#include <QImage>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// One camera: a thread that waits for triggers and answers each with the next image of the pattern.
class PatternCamera
{
public:
    /// Receives each image on the camera's thread.
    using Deliver = std::function<void(const QString& cameraKey, const QImage& image)>;

    PatternCamera(CameraEntry entry, Deliver deliver);
    /// Waits for the capture in hand; nothing is delivered afterwards.
    ~PatternCamera();
    Q_DISABLE_COPY(PatternCamera)

    const QString& key() const { return m_entry.key; }

    /// Asks for one image. Returns at once; a trigger that finds the camera busy waits for its turn.
    void trigger();

    /// Tells the camera to end: the capture in hand is delivered at once, waiting triggers are dropped. Does not wait.
    void requestStop();

private:
    void run();
    bool waitForTrigger();
    void expose();

    const CameraEntry m_entry;
    const Deliver m_deliver;
    std::mutex m_mutex; // protects m_waiting and m_stopping
    std::condition_variable m_changed;
    int m_waiting = 0;
    bool m_stopping = false;
    std::thread m_thread; ///< last, for it uses all of the above from its first moment
};
