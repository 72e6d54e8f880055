#include "V4l2Bus.h"

#include "V4l2Text.h"

#include <algorithm>
#include <cerrno>
#include <linux/videodev2.h>

namespace {

/// Nodes that cannot be opened do not say what they deliver: one for each camera stands for all.
bool isListed(const QVector<V4l2Bus::Found>& all, const V4l2Bus::Found& found)
{
    return std::any_of(all.begin(), all.end(), [&found](const V4l2Bus::Found& other) {
        return !other.problem.isEmpty() && other.identity.model == found.identity.model &&
               other.identity.serial == found.identity.serial;
    });
}

} // namespace

V4l2Bus::V4l2Bus(V4l2System& system)
    : m_system(system)
{
}

QString V4l2Bus::identify(V4l2System& system, int descriptor, Found* found)
{
    v4l2_capability capability{};
    if (const int error = system.control(descriptor, VIDIOC_QUERYCAP, &capability))
        return v4l2Problem("VIDIOC_QUERYCAP", error);
    const bool ofNode = (capability.capabilities & V4L2_CAP_DEVICE_CAPS) != 0;
    const quint32 abilities = ofNode ? capability.device_caps : capability.capabilities;
    constexpr quint32 needed = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
    if ((abilities & needed) != needed)
        return v4l2Problem("V4L2_CAP_VIDEO_CAPTURE", ENOTTY);
    found->identity.model = v4l2Text(capability.card);
    found->port = v4l2Text(capability.bus_info);
    return {};
}

QVector<V4l2Bus::Found> V4l2Bus::look() const
{
    QVector<Found> all;
    for (const V4l2System::Node& node : m_system.nodes()) {
        Found found;
        found.identity = {node.vendor, node.model, node.serial, {}, node.path};
        const int descriptor = m_system.open(node.path);
        if (descriptor < 0) {
            found.problem = v4l2Problem("open", -descriptor);
            if (!isListed(all, found))
                all.append(found);
            continue;
        }
        const bool delivers = identify(m_system, descriptor, &found).isEmpty();
        m_system.close(descriptor);
        if (delivers)
            all.append(found);
    }
    return all;
}

QVector<FoundCamera> V4l2Bus::cameras() const
{
    const QVector<Found> all = look();
    QVector<FoundCamera> cameras;
    for (const Found& one : all) {
        const auto same = std::count_if(all.begin(), all.end(), [&one](const Found& other) {
            return other.identity.serial == one.identity.serial;
        });
        const bool unique = !one.identity.serial.isEmpty() && same == 1;
        FoundCamera camera;
        camera.type = CameraType::Usb;
        camera.vendor = one.identity.vendor;
        camera.model = one.identity.model;
        camera.serial = unique ? one.identity.serial : QString();
        camera.address = one.identity.address;
        camera.problem = one.problem;
        const QString name = unique ? one.identity.serial : one.port.isEmpty() ? one.identity.address : one.port;
        camera.settings = {{QStringLiteral("device"), name}};
        cameras.append(camera);
    }
    return cameras;
}

QString V4l2Bus::locate(const QString& wanted, QString* problem) const
{
    if (wanted.startsWith(QLatin1Char('/')))
        return wanted;
    const QVector<Found> all = look();
    QStringList paths;
    QStringList ports;
    QStringList others;
    for (const Found& one : all) {
        if (wanted == one.identity.serial || wanted == one.port || wanted == one.identity.model) {
            paths << one.identity.address;
            ports << one.port;
        }
        others << QStringLiteral("%1 (%2)").arg(one.identity.model,
                                                one.identity.serial.isEmpty() ? one.port : one.identity.serial);
    }
    if (paths.size() == 1)
        return paths.first();
    *problem = paths.size() > 1 ? tr("有 %1 台 USB 相机都叫“%2”：请改用序列号或接口：%3")
                                      .arg(paths.size())
                                      .arg(wanted, ports.join(QStringLiteral(", ")))
               : others.isEmpty() ? tr("找不到 USB 相机“%1”，也没有其他 USB 相机：检查插头和电源").arg(wanted)
                                  : tr("找不到 USB 相机“%1”，有：%2").arg(wanted, others.join(QStringLiteral(", ")));
    return {};
}
