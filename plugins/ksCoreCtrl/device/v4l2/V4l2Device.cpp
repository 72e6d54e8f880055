#include "V4l2Device.h"

#include "../DeviceDriver.h"
#include "V4l2Text.h"

#include <algorithm>
#include <linux/videodev2.h>

namespace {

constexpr std::chrono::milliseconds lookInterval(100); ///< for a capture that is cancelled

const auto deviceName = QStringLiteral("device");

/// Settings that a stream in hand cannot follow.
bool needsNewStream(const QVariantMap& before, const QVariantMap& now)
{
    for (const char* name : {"device", "pixel_format", "width", "height"}) {
        if (before.value(QLatin1String(name)) != now.value(QLatin1String(name)))
            return true;
    }
    return false;
}

} // namespace

QVector<CameraParameter> V4l2Device::parameters()
{
    const QString tip = tr("序列号、USB 接口（例如 usb-0000:00:14.0-1）、型号，或 /dev/video0 这样的路径");
    const CameraParameter device{deviceName, tr("相机(&D)"), CameraParameter::Kind::Text, QString(), 0, 0, {}, {}, tip};
    return QVector<CameraParameter>{device} + V4l2Controls::parameters() +
           QVector<CameraParameter>{DeviceCamera::timeLimit()} + V4l2Format::parameters();
}

QVector<FoundCamera> V4l2Device::find()
{
    return V4l2Bus(V4l2System::kernel()).cameras();
}

V4l2Device::V4l2Device(V4l2System& system)
    : m_system(system)
{
}

V4l2Device::~V4l2Device()
{
    close();
}

QString V4l2Device::open(const QVariantMap& settings, const QVariantMap& features)
{
    m_settings = settings;
    m_features = features;
    m_damaged = 0;
    QString problem = openNode(settings.value(deviceName).toString().trimmed());
    if (problem.isEmpty())
        problem = m_format.agree(m_system, m_descriptor, settings);
    if (problem.isEmpty()) {
        m_controls = std::make_unique<V4l2Controls>(m_system, m_descriptor);
        problem = m_controls->apply(settings);
    }
    if (problem.isEmpty()) {
        writeFeatures(features);
        problem = startStream();
    }
    if (!problem.isEmpty())
        close();
    return problem;
}

/// A camera that was opened by its path may be under another when it is plugged in again, and another one under its.
QString V4l2Device::openNode(const QString& wanted)
{
    const V4l2Bus bus(m_system);
    const QString serial = m_openedAs == wanted ? m_identity.serial : QString();
    QString problem;
    if (wanted.startsWith(QLatin1Char('/')) && !serial.isEmpty()) {
        const QString path = bus.locate(serial, &problem);
        if (!path.isEmpty())
            return openPath(path);
    }
    const QString path = bus.locate(wanted, &problem);
    if (path.isEmpty())
        return problem;
    problem = openPath(path);
    if (problem.isEmpty())
        m_openedAs = wanted;
    return problem;
}

QString V4l2Device::openPath(const QString& path)
{
    const int descriptor = m_system.open(path);
    if (descriptor < 0)
        return v4l2Problem("open", -descriptor);
    m_descriptor = descriptor;
    V4l2Bus::Found found;
    const QString problem = V4l2Bus::identify(m_system, descriptor, &found);
    if (!problem.isEmpty())
        return problem;
    m_identity = found.identity;
    m_identity.address = path;
    for (const V4l2System::Node& node : m_system.nodes()) {
        if (node.path != path)
            continue;
        m_identity.vendor = node.vendor;
        m_identity.serial = node.serial;
    }
    return {};
}

QString V4l2Device::startStream()
{
    m_stream = std::make_unique<V4l2Stream>(m_system, m_descriptor);
    const QString problem = m_stream->start();
    settle();
    m_settled = {}; // all frames come with what is in force by now
    return problem;
}

void V4l2Device::writeFeatures(const QVariantMap& features)
{
    m_featureWarnings.clear();
    for (auto it = features.begin(); it != features.end(); ++it) {
        const QString problem = m_controls->write(it.key(), it.value());
        if (!problem.isEmpty())
            m_featureWarnings << tr("%1：%2").arg(it.key(), problem);
    }
}

void V4l2Device::close()
{
    m_stream.reset();
    m_controls.reset();
    if (m_descriptor >= 0)
        m_system.close(m_descriptor);
    m_descriptor = -1;
}

QString V4l2Device::apply(const QVariantMap& settings)
{
    if (needsNewStream(m_settings, settings)) {
        close();
        return open(settings, m_features);
    }
    m_settings = settings;
    const QString problem = m_controls->apply(settings);
    settle();
    return problem;
}

/// The frame in hand, and the one that the sensor has begun, are still exposed as before.
void V4l2Device::settle()
{
    m_stream->setExposure(std::chrono::microseconds(qint64(1000 * m_controls->exposureMs())));
    m_settled = Clock::now() + m_stream->period();
}

DeviceShot V4l2Device::capture(const DeviceRequest& request)
{
    DeviceShot shot;
    const Clock::time_point end = Clock::now() + request.limit;
    const Clock::time_point earliest = std::max(request.asked, m_settled);
    bool anyDamaged = false;
    shot.problem = m_stream->dropOld();
    while (shot.problem.isEmpty()) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0 || request.cancelled)
            return nothingCame(request, anyDamaged);
        const auto frame = m_stream->take(std::min(left, lookInterval), &shot.problem);
        if (!frame)
            continue;
        if (frame->began > earliest && !frame->damaged)
            shot.image = m_format.image(frame->data, frame->size);
        const bool damaged = frame->began > earliest && shot.image.isNull();
        anyDamaged = anyDamaged || damaged;
        m_damaged += damaged ? 1 : 0;
        shot.frame = frame->number;
        shot.problem = m_stream->give(*frame);
        if (!shot.image.isNull()) {
            shot.end = DeviceShot::End::Image; // a buffer that the device does not take back is the next capture's
            shot.problem.clear();
            return shot;
        }
    }
    return shot;
}

DeviceShot V4l2Device::nothingCame(const DeviceRequest& request, bool anyDamaged) const
{
    DeviceShot shot;
    shot.end = anyDamaged ? DeviceShot::End::Incomplete : DeviceShot::End::Late;
    shot.problem = anyDamaged
                       ? tr("USB 相机的图像不完整：检查线缆和集线器，线缆不要过长")
                       : tr("USB 相机在 %1 毫秒内没有给出图像：加大响应时限，或减小图像").arg(request.limit.count());
    return shot;
}

QString V4l2Device::check()
{
    v4l2_capability capability{};
    const int error = m_system.control(m_descriptor, VIDIOC_QUERYCAP, &capability);
    return error ? v4l2Problem("VIDIOC_QUERYCAP", error) : QString();
}

QString V4l2Device::warning() const
{
    QStringList warnings{m_format.warning(), m_controls ? m_controls->warning() : QString()};
    warnings += m_featureWarnings;
    warnings.removeAll(QString());
    return warnings.join(QLatin1Char('\n'));
}

QMap<QString, QString> V4l2Device::missingSettings() const
{
    return m_controls ? m_controls->missing() : QMap<QString, QString>();
}

QStringList V4l2Device::featureNames()
{
    return m_controls ? m_controls->names() : QStringList();
}

CameraFeature V4l2Device::feature(const QString& name)
{
    return m_controls->feature(name);
}

QString V4l2Device::writeFeature(const QString& name, const QVariant& value)
{
    const QString problem = m_controls->write(name, value);
    if (problem.isEmpty()) {
        if (value.isValid())
            m_features.insert(name, value);
        settle();
    }
    return problem;
}
