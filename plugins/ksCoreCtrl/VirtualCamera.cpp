#include "VirtualCamera.h"

#include "CameraEvents.h"
#include "CameraFile.h"
#include "ImageFormat.h"

#include <valvecell/HomeFiles.h>

#include <QDir>

#include <algorithm>

namespace {

/// What was delivered is being judged; decoding the next image meanwhile would share the processor with that.
constexpr std::chrono::milliseconds restAfterImage(40);

} // namespace

QVector<CameraParameter> VirtualCamera::parameters()
{
    return {CameraParameter::exposure(), CameraParameter::transferTime(), CameraParameter::imageFolder()};
}

VirtualCamera::VirtualCamera(const CameraConfig& config, CameraEvents& events)
    : m_key(config.key)
    , m_events(events)
    , m_settings(config.key, parameters)
{
    m_status.type = type;
    m_status.message = m_settings.takeOver(config.settings);
    if (!config.settings.contains(QStringLiteral("folder")))
        m_status.message = tr("没有设置图像文件夹 (folder)");
    if (m_status.message.isEmpty()) {
        m_folder = folderPath();
        m_status.state = CameraState::Initialized;
    }
}

VirtualCamera::~VirtualCamera()
{
    close();
}

void VirtualCamera::open()
{
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
}

/// Of the triggers that wait, the first alone keeps its place, and only if no capture is in hand.
void VirtualCamera::close()
{
    if (!m_thread.joinable())
        return;
    std::deque<Trigger> dropped;
    {
        Lock lock(m_mutex);
        m_stopping = true;
        const auto kept = m_triggers.begin() + (m_capturing || m_triggers.empty() ? 0 : 1);
        dropped.assign(kept, m_triggers.end());
        m_triggers.erase(kept, m_triggers.end());
    }
    m_wake.notify_all();
    m_thread.join();
    m_status.state = CameraState::Closed;
    for (const Trigger& trigger : dropped)
        m_events.refuse(m_key, trigger.number, Topics::noImage, tr("相机已关闭"));
    for (const auto& callback : m_previews)
        callback({}, tr("相机已关闭"));
    m_previews.clear();
}

void VirtualCamera::trigger(std::optional<quint64> number)
{
    const auto now = Clock::now();
    Lock lock(m_mutex);
    const bool closed = m_stopping;
    const bool taken = !closed && m_triggers.size() < maxWaiting;
    if (taken)
        m_triggers.push_back({now, number});
    lock.unlock();
    if (taken)
        m_wake.notify_all();
    else if (closed)
        m_events.refuse(m_key, number, Topics::cameraUnusable, tr("相机已关闭"));
    else
        m_events.refuse(m_key, number, Topics::triggerDropped, tr("等待的触发过多，已丢弃一次触发"));
}

bool VirtualCamera::preview(ICameraPreview::Callback callback)
{
    {
        Lock lock(m_mutex);
        if (m_stopping || m_previews.size() == maxPreviews)
            return false;
        m_previews.push_back(std::move(callback));
    }
    m_wake.notify_all();
    return true;
}

CameraStatus VirtualCamera::status() const
{
    Lock lock(m_mutex);
    return m_status;
}

CameraStatistics VirtualCamera::statistics() const
{
    Lock lock(m_mutex);
    return m_tally.statistics(Clock::now());
}

QVariantMap VirtualCamera::settings() const
{
    Lock lock(m_mutex);
    return m_settings.values();
}

bool VirtualCamera::accepts(const QVariantMap& settings, QString* error) const
{
    Lock lock(m_mutex);
    CameraSettings next = m_settings;
    lock.unlock();
    return next.change(settings, error);
}

/// The thread sees by itself that the folder is another.
void VirtualCamera::apply(const QVariantMap& settings)
{
    {
        Lock lock(m_mutex);
        m_settings.change(settings, nullptr);
        m_folder = folderPath();
    }
    m_wake.notify_all();
}

/// A new folder first, then captures, previews, and reading ahead only when nobody waits.
void VirtualCamera::run()
{
    Lock lock(m_mutex);
    while (!m_stopping || !m_triggers.empty()) {
        if (m_images.path() != m_folder) {
            m_images = ImageFolder(m_folder);
            readAhead(lock);
        } else if (!m_triggers.empty()) {
            capture(lock);
        } else if (!m_previews.empty()) {
            capturePreview(lock);
        } else if (m_readAheadDue) {
            if (!m_wake.wait_for(lock, restAfterImage, [this] { return hasWork(); }))
                readAhead(lock);
        } else {
            m_wake.wait(lock);
        }
    }
}

bool VirtualCamera::hasWork() const
{
    return m_stopping || !m_triggers.empty() || !m_previews.empty() || m_images.path() != m_folder;
}

QString VirtualCamera::folderPath() const
{
    const QString folder = m_settings.text("folder");
    return folder.isEmpty() ? QString() : QDir::cleanPath(QDir(HomeFiles::home()).absoluteFilePath(folder));
}

VirtualCamera::Clock::duration VirtualCamera::delay() const
{
    const std::chrono::duration<double, std::milli> delay(m_settings.number("exposure_ms") +
                                                          m_settings.number("transfer_ms"));
    return std::chrono::duration_cast<Clock::duration>(delay);
}

/// Exposures follow each other: one begins with its trigger, or when the one before is through.
void VirtualCamera::capture(Lock& lock)
{
    m_freeAt = std::max(m_triggers.front().at, m_freeAt) + delay();
    const auto number = m_triggers.front().number;
    m_triggers.pop_front();
    m_capturing = true;
    if (m_ahead.image.isNull())
        readAhead(lock);
    m_wake.wait_until(lock, m_freeAt, [this] { return m_stopping; });
    noteImage(m_ahead.image);
    lock.unlock();
    deliver(number);
    lock.lock();
    m_capturing = false;
    m_readAheadDue = true;
}

void VirtualCamera::noteImage(const QImage& image)
{
    if (image.isNull())
        return;
    m_status.format = pixelFormat(image);
    m_status.size = image.size();
    m_tally.image(Clock::now());
}

void VirtualCamera::deliver(std::optional<quint64> number)
{
    const ImageFolder::Shot shot = std::exchange(m_ahead, {});
    for (const QString& reason : shot.skipped)
        m_events.notify(Topics::imageSkipped, m_key, tr("已跳过无法读取的图像 %1").arg(reason));
    if (shot.image.isNull())
        m_events.refuse(m_key, number, Topics::noImage, status().message);
    else
        m_events.deliver(m_key, number, shot.image);
}

void VirtualCamera::readAhead(Lock& lock)
{
    m_readAheadDue = false;
    lock.unlock();
    m_ahead = m_images.next();
    const bool there = !m_images.path().isEmpty() && QDir(m_images.path()).exists();
    lock.lock();
    if (m_images.path().isEmpty())
        return;
    const bool ready = !m_ahead.image.isNull();
    m_status.state = ready ? CameraState::Running : there ? CameraState::Opened : CameraState::Uninitialized;
    if (!there)
        m_status.message = tr("图像文件夹 %1 不存在").arg(m_images.path());
    else if (!ready)
        m_status.message = tr("图像文件夹 %1 中没有可读的图像").arg(m_images.path());
    else
        m_status.message =
            m_ahead.skipped.isEmpty() ? QString() : tr("已跳过无法读取的图像 %1").arg(m_ahead.skipped.last());
}

/// A trigger that comes meanwhile goes first, and the preview begins anew.
void VirtualCamera::capturePreview(Lock& lock)
{
    if (m_wake.wait_for(lock, delay(), [this] { return m_stopping || !m_triggers.empty(); }))
        return;
    const auto callback = std::move(m_previews.front());
    m_previews.pop_front();
    const QString folder = m_folder;
    const QString status = m_status.message;
    lock.unlock();
    if (m_previewImages.path() != folder)
        m_previewImages = ImageFolder(folder);
    const QImage image = m_previewImages.next().image;
    const QString reason = status.isEmpty() ? tr("没有图像") : status;
    callback(image, image.isNull() ? reason : QString());
    lock.lock();
    noteImage(image);
}
