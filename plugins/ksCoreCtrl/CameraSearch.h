#pragma once

#include <valvecell/ICameraDiscovery.h>

#include <functional>
#include <future>
#include <mutex>

class Camera;

/// Looks for cameras of all types, on a thread of its own that the destructor waits for.
class CameraSearch final : public ICameraDiscovery
{
public:
    /// Calls for each configured camera.
    using Visit = std::function<void(const std::function<void(const QString& key, Camera& camera)>& visit)>;

    explicit CameraSearch(Visit configured);
    ~CameraSearch();

    void discover() override;
    bool isDiscovering() override;
    QVector<FoundCamera> found() override;

private:
    void noteOwner(FoundCamera& found) const;

    const Visit m_configured;
    std::mutex m_mutex; // protects the two below
    bool m_running = false;
    QVector<FoundCamera> m_found;
    std::future<void> m_look;
};
