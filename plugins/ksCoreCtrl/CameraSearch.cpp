#include "CameraSearch.h"

#include "CameraFactory.h"
#include "device/CameraDevice.h"

CameraSearch::CameraSearch(Visit configured)
    : m_configured(std::move(configured))
{
}

CameraSearch::~CameraSearch() = default;

void CameraSearch::discover()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (std::exchange(m_running, true))
            return;
    }
    m_look = std::async(std::launch::async, [this] {
        auto found = findCameras();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_found = std::move(found);
        m_running = false;
    });
}

bool CameraSearch::isDiscovering()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_running;
}

QVector<FoundCamera> CameraSearch::found()
{
    QVector<FoundCamera> found;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        found = m_found;
    }
    for (FoundCamera& camera : found)
        noteOwner(camera);
    return found;
}

/// A camera that this program has open itself looks from outside like one that another program uses.
void CameraSearch::noteOwner(FoundCamera& found) const
{
    m_configured([&found](const QString& key, Camera& camera) {
        const CameraStatus status = camera.status();
        if (!camera.device() || status.type != found.type)
            return;
        const DeviceIdentity is = camera.device()->identity();
        const bool same = found.serial.isEmpty() ? found.address == is.address : found.serial == is.serial;
        const QString named = camera.settings().value(QStringLiteral("device")).toString();
        const bool isNamed = named == found.serial || named == found.address || named == found.userName;
        if (!same && (named.isEmpty() || !isNamed))
            return;
        found.configuredAs = key;
        if (status.state == CameraState::Running)
            found.problem.clear();
    });
}
