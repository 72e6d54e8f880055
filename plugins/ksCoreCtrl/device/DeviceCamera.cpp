#include "DeviceCamera.h"

#include "../CameraEvents.h"
#include "../CameraFile.h"
#include "../ImageFormat.h"

#include <algorithm>

CameraParameter DeviceCamera::timeLimit()
{
    return {QStringLiteral("timeout_ms"),
            tr("响应时限(&M)"),
            CameraParameter::Kind::Whole,
            800,
            50,
            60000,
            tr("毫秒"),
            {},
            tr("曝光之外，从触发到图像最多等待的时间；超过后本次触发按无图像处理")};
}

DeviceCamera::DeviceCamera(const CameraConfig& config, CameraEvents& events, CameraSettings::Parameters parameters,
                           std::unique_ptr<CameraDevice> device, DevicePace pace)
    : m_key(config.key)
    , m_events(events)
    , m_pace(pace)
    , m_device(std::move(device))
    , m_settings(config.key, parameters)
    , m_features(config.settings.value(QStringLiteral("features")).toMap())
{
    m_status.type = CameraType(config.type);
    m_status.message = m_settings.takeOver(config.settings);
    if (m_status.message.isEmpty())
        m_status.message = m_settings.problem();
    if (m_status.message.isEmpty()) {
        m_link = Link::Opening;
        m_status.state = CameraState::Initialized;
    }
}

DeviceCamera::~DeviceCamera()
{
    close();
}

void DeviceCamera::open()
{
    if (m_thread.joinable())
        return;
    m_thread = std::thread([this] { run(); });
    m_watcher = std::thread([this] { watch(); });
}

void DeviceCamera::close()
{
    if (!m_thread.joinable())
        return;
    {
        const Lock lock(m_mutex);
        m_stopping = true;
    }
    m_cancelled = true;
    m_wake.notify_all();
    m_watch.notify_all();
    m_watcher.join();
    m_thread.join();
    Lock lock(m_mutex);
    refuseAll(lock, Topics::noImage, tr("相机已关闭"));
    m_status.state = CameraState::Closed;
}

/// While the camera is opened for the first time, triggers wait for it as long as for an image.
void DeviceCamera::trigger(std::optional<quint64> number)
{
    Order order{Clock::now(), [this, number](const QImage& image, const char* topic, const QString& problem) {
                    image.isNull() ? m_events.refuse(m_key, number, topic, problem)
                                   : m_events.deliver(m_key, number, image);
                }};
    Lock lock(m_mutex);
    const bool unusable = m_stopping || m_link == Link::Unset || m_link == Link::Lost;
    const bool full = m_triggers.size() == maxWaiting;
    const QString message = m_stopping ? tr("相机已关闭") : m_status.message;
    if (!unusable && !full) {
        m_triggers.push_back(std::move(order));
        lock.unlock();
        m_wake.notify_all();
        m_watch.notify_all();
        return;
    }
    lock.unlock();
    if (unusable)
        order.done({}, Topics::cameraUnusable, message);
    else
        order.done({}, Topics::triggerDropped, tr("等待的触发过多，已丢弃一次触发"));
}

bool DeviceCamera::preview(ICameraPreview::Callback callback)
{
    {
        const Lock lock(m_mutex);
        if (m_stopping || m_link == Link::Unset || m_link == Link::Lost || m_previews.size() == maxPreviews)
            return false;
        m_previews.push_back({Clock::now(), [callback](const QImage& image, const char*, const QString& problem) {
                                  callback(image, problem);
                              }});
    }
    m_wake.notify_all();
    m_watch.notify_all();
    return true;
}

CameraStatus DeviceCamera::status() const
{
    const Lock lock(m_mutex);
    return m_status;
}

CameraStatistics DeviceCamera::statistics() const
{
    const Lock lock(m_mutex);
    return m_tally.statistics(Clock::now());
}

QVariantMap DeviceCamera::settings() const
{
    const Lock lock(m_mutex);
    return m_settings.values();
}

bool DeviceCamera::accepts(const QVariantMap& settings, QString* error) const
{
    Lock lock(m_mutex);
    CameraSettings next = m_settings;
    lock.unlock();
    return next.change(settings, error);
}

/// A camera whose settings were wrong gets going when they are right now.
void DeviceCamera::apply(const QVariantMap& settings)
{
    {
        const Lock lock(m_mutex);
        m_settings.change(settings, nullptr);
        m_settingsDue = true;
        if (m_link == Link::Unset && m_settings.problem().isEmpty()) {
            m_link = Link::Opening;
            m_status.state = CameraState::Initialized;
            m_status.message.clear();
        }
    }
    m_wake.notify_all();
}

DeviceIdentity DeviceCamera::identity() const
{
    const Lock lock(m_mutex);
    return m_identity;
}

QVariantMap DeviceCamera::features() const
{
    const Lock lock(m_mutex);
    return m_features;
}

QMap<QString, QString> DeviceCamera::missingSettings() const
{
    const Lock lock(m_mutex);
    return m_missing;
}

void DeviceCamera::readFeatures(ICameraFeatures::FeaturesCallback callback)
{
    addJob(FeatureJob::reading(std::move(callback)));
}

void DeviceCamera::writeFeature(const QString& name, const QVariant& value, ICameraFeatures::WrittenCallback callback)
{
    addJob(FeatureJob::writing(name, value, std::move(callback)));
}

void DeviceCamera::addJob(FeatureJob job)
{
    Lock lock(m_mutex);
    const bool taken = !m_stopping && m_link == Link::Open;
    const QString reason = m_stopping ? tr("相机已关闭") : tr("相机没有打开：%1").arg(m_status.message);
    if (taken)
        m_jobs.push_back(std::move(job));
    lock.unlock();
    if (taken)
        m_wake.notify_all();
    else
        job.refuse(reason);
}

void DeviceCamera::run()
{
    Lock lock(m_mutex);
    while (!m_stopping)
        step(lock);
    lock.unlock();
    if (m_deviceOpen)
        m_device->close();
}

void DeviceCamera::step(Lock& lock)
{
    if (m_link == Link::Unset)
        m_wake.wait(lock);
    else if (m_link != Link::Open)
        connect(lock);
    else if (m_settingsDue)
        takeSettings(lock);
    else if (!m_triggers.empty())
        capture(lock, m_triggers);
    else if (!m_jobs.empty())
        stepFeatures(lock);
    else if (!m_previews.empty())
        capture(lock, m_previews);
    else if (!m_wake.wait_for(lock, m_pace.check, [this] { return hasWork(); }))
        check(lock);
}

bool DeviceCamera::hasWork() const
{
    return m_stopping || m_link != Link::Open || m_settingsDue || !m_triggers.empty() || !m_jobs.empty() ||
           !m_previews.empty();
}

/// The camera counts as lost until it is open, so that nobody waits for it meanwhile.
void DeviceCamera::connect(Lock& lock)
{
    if (std::exchange(m_deviceOpen, false)) {
        lock.unlock();
        m_device->close();
        lock.lock();
    }
    if (m_wake.wait_for(lock, m_pause, [this] { return m_stopping || m_settingsDue; }) && m_stopping)
        return;
    m_settingsDue = false;
    const QVariantMap settings = m_settings.values();
    const QVariantMap features = m_features;
    lock.unlock();
    const QString problem = m_device->open(settings, features);
    lock.lock();
    if (!problem.isEmpty()) {
        m_pause = std::clamp(2 * m_pause, m_pace.firstPause, m_pace.longestPause);
        return lose(lock, problem);
    }
    const bool wasLost = m_link == Link::Lost;
    noteOpen();
    if (wasLost) {
        lock.unlock();
        m_events.notify(Topics::cameraBack, m_key, tr("相机已恢复"));
        lock.lock();
    }
}

void DeviceCamera::noteOpen()
{
    m_deviceOpen = true;
    m_pause = m_pace.firstPause;
    m_link = Link::Open;
    m_freeSince = Clock::now();
    m_identity = m_device->identity();
    m_warning = m_device->warning();
    m_missing = m_device->missingSettings();
    m_tally.opened();
    m_status.state = CameraState::Running;
    m_status.message = m_warning;
}

void DeviceCamera::takeSettings(Lock& lock)
{
    m_settingsDue = false;
    const QVariantMap settings = m_settings.values();
    lock.unlock();
    const QString problem = m_device->apply(settings);
    const QString warning = m_device->warning();
    auto missing = m_device->missingSettings();
    lock.lock();
    m_missing = std::move(missing);
    m_status.message = m_warning = warning;
    if (!problem.isEmpty())
        lose(lock, problem);
}

/// Whoever finds the order in hand answers it: this, or the watching thread.
void DeviceCamera::capture(Lock& lock, std::deque<Order>& orders)
{
    m_inHand = std::move(orders.front());
    orders.pop_front();
    const DeviceRequest request{m_inHand->asked, limit(), m_cancelled};
    m_overdue = Clock::now() + request.limit + m_pace.grace;
    lock.unlock();
    m_watch.notify_all();
    const DeviceShot shot = m_device->capture(request);
    const quint64 lost = m_device->lostPackets(), resent = m_device->resentPackets();
    lock.lock();
    m_tally.packets(lost, resent);
    m_freeSince = Clock::now();
    if (const auto order = std::exchange(m_inHand, std::nullopt)) {
        note(shot);
        if (shot.end == DeviceShot::End::Lost)
            m_link = Link::Lost; // so that who hears of it and asks again is answered at once
        lock.unlock();
        const QString problem = m_cancelled ? tr("相机已关闭") : shot.problem;
        order->done(shot.image, Topics::noImage, shot.image.isNull() ? problem : QString());
        lock.lock();
    }
    if (m_link == Link::Lost && !m_stopping)
        lose(lock, m_status.message);
    else if (!m_stopping && m_freeSince - m_checked > m_pace.check)
        check(lock); // a busy camera is never idle for long enough
}

void DeviceCamera::note(const DeviceShot& shot)
{
    m_status.message = shot.image.isNull() ? shot.problem : m_warning;
    if (shot.end == DeviceShot::End::Incomplete)
        m_tally.incomplete();
    if (shot.image.isNull())
        return;
    m_tally.image(Clock::now());
    m_status.format = pixelFormat(shot.image);
    m_status.size = shot.image.size();
}

/// A step of the first job; then triggers have their turn again.
void DeviceCamera::stepFeatures(Lock& lock)
{
    FeatureJob job = std::move(m_jobs.front());
    m_jobs.pop_front();
    lock.unlock();
    const bool over = job.step(*m_device);
    lock.lock();
    if (!over) {
        m_jobs.push_front(std::move(job));
        return;
    }
    const QVariantMap written = job.written();
    for (auto it = written.cbegin(); it != written.cend(); ++it)
        m_features.insert(it.key(), it.value());
    lock.unlock();
    job.tell();
    lock.lock();
}

void DeviceCamera::check(Lock& lock)
{
    lock.unlock();
    const QString problem = m_device->check();
    m_checked = Clock::now();
    lock.lock();
    if (!problem.isEmpty())
        lose(lock, problem);
}

void DeviceCamera::lose(Lock& lock, const QString& problem)
{
    const bool wasThere = m_link == Link::Open || m_deviceOpen;
    m_link = Link::Lost;
    m_status.state = CameraState::Initialized;
    m_status.message = problem;
    refuseAll(lock, Topics::noImage, problem);
    if (wasThere) {
        lock.unlock();
        m_events.notify(Topics::cameraLost, m_key, problem);
        lock.lock();
    }
}

void DeviceCamera::refuseAll(Lock& lock, const char* topic, const QString& problem)
{
    std::deque<Order> orders;
    orders.swap(m_triggers);
    if (m_inHand)
        orders.push_front(*std::exchange(m_inHand, std::nullopt));
    std::move(m_previews.begin(), m_previews.end(), std::back_inserter(orders));
    m_previews.clear();
    std::deque<FeatureJob> jobs;
    jobs.swap(m_jobs);
    lock.unlock();
    for (const Order& order : orders)
        order.done({}, topic, problem);
    for (const FeatureJob& job : jobs)
        job.refuse(problem);
    lock.lock();
}

void DeviceCamera::watch()
{
    Lock lock(m_mutex);
    while (!m_stopping) {
        const auto due = nextOverdue();
        if (!due) {
            m_watch.wait(lock);
        } else if (*due > Clock::now()) {
            m_watch.wait_until(lock, *due);
        } else {
            const bool opening = m_link == Link::Opening;
            m_link = opening ? m_link : Link::Lost;
            const QString problem = opening ? tr("相机还没有打开") : tr("相机没有在时限内响应，正在重新连接");
            m_status.message = problem;
            refuseAll(lock, Topics::noImage, problem);
        }
    }
}

/// Orders behind the one in hand wait for it; those that the device is not even working at wait as long as for an
/// image.
std::optional<DeviceCamera::Clock::time_point> DeviceCamera::nextOverdue() const
{
    if (m_inHand)
        return m_overdue;
    if (m_triggers.empty() && m_previews.empty())
        return std::nullopt;
    const auto asked = m_triggers.empty() ? m_previews.front().asked : m_triggers.front().asked;
    return std::max(asked, m_freeSince) + limit() + m_pace.grace;
}

std::chrono::milliseconds DeviceCamera::limit() const
{
    return std::chrono::milliseconds(qint64(m_settings.number("timeout_ms") + m_settings.number("exposure_ms")));
}
