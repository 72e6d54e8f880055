#include "AravisBus.h"

#include "GvcpProbe.h"

#include <QSet>

#include <algorithm>
#include <arv.h>
#include <mutex>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds registerLimit(300);
constexpr std::chrono::seconds freshness(1);

AravisBus::Seen seenAt(unsigned i)
{
    AravisBus::Seen seen;
    seen.id = QString::fromUtf8(arv_get_device_id(i));
    DeviceIdentity& identity = seen.identity;
    identity.vendor = QString::fromUtf8(arv_get_device_vendor(i));
    identity.model = QString::fromUtf8(arv_get_device_model(i));
    identity.serial = QString::fromUtf8(arv_get_device_serial_nbr(i));
    if (qstrcmp(arv_get_device_protocol(i), "GigEVision") == 0)
        identity.address = QString::fromUtf8(arv_get_device_address(i));
    return seen;
}

QVector<AravisBus::Seen> lookNow()
{
    arv_update_device_list();
    QVector<AravisBus::Seen> all;
    for (unsigned i = 0; i < arv_get_n_devices(); ++i)
        all.append(seenAt(i));
    // A camera that several networks of this machine reach is seen once for each.
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) {
        return std::tie(a.identity.serial, a.identity.address) < std::tie(b.identity.serial, b.identity.address);
    });
    const auto same = [](const auto& a, const auto& b) {
        return a.identity.serial == b.identity.serial && a.identity.address == b.identity.address;
    };
    all.erase(std::unique(all.begin(), all.end(), same), all.end());
    for (AravisBus::Seen& seen : all) {
        if (seen.identity.address.isEmpty())
            continue;
        if (const auto answer = GvcpProbe::identify(seen.identity.address, registerLimit))
            seen.identity.userName = answer->userName;
    }
    return all;
}

} // namespace

QVector<AravisBus::Seen> AravisBus::look()
{
    static std::mutex mutex; // protects the two below, and the library's list
    static QVector<Seen> last;
    static Clock::time_point at;
    const std::lock_guard<std::mutex> lock(mutex);
    if (at == Clock::time_point() || Clock::now() - at > freshness) {
        last = lookNow();
        at = Clock::now();
    }
    return last;
}

bool AravisBus::isAddress(const QString& text)
{
    return g_hostname_is_ip_address(text.toUtf8().constData()) && !text.contains(QLatin1Char(':'));
}

bool AravisBus::isMeant(const Seen& seen, const QString& text)
{
    const DeviceIdentity& is = seen.identity;
    return text == is.serial || text == is.userName || text == is.address || text == seen.id;
}

QString AravisBus::problem(const Seen& seen)
{
    const QString& address = seen.identity.address;
    if (address.isEmpty())
        return {};
    const auto control = GvcpProbe::readRegister(address, GvcpProbe::controlPrivilege, registerLimit);
    if (!control)
        return tr("相机地址 %1 从本机无法到达：请把相机和网卡设为同一网段的地址").arg(address);
    return *control == 0 ? QString() : tr("相机正被另一个程序使用：请先关闭那个程序");
}

QVector<FoundCamera> AravisBus::find()
{
    QVector<FoundCamera> found;
    for (const Seen& seen : look()) {
        FoundCamera camera;
        camera.type = CameraType::Gige;
        camera.vendor = seen.identity.vendor;
        camera.model = seen.identity.model;
        camera.serial = seen.identity.serial;
        camera.userName = seen.identity.userName;
        camera.address = seen.identity.address;
        camera.problem = problem(seen);
        const QString name = camera.serial.isEmpty() ? camera.address : camera.serial;
        camera.settings = {{QStringLiteral("device"), name.isEmpty() ? seen.id : name}};
        found.append(camera);
    }
    return found;
}
