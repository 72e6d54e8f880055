#include "AravisDevice.h"

#include "../PixelConversion.h"
#include "AravisBus.h"
#include "AravisFeatures.h"
#include "AravisText.h"
#include "GvcpProbe.h"

#include <future>
#include <mutex>
#include <thread>

namespace {

constexpr std::chrono::milliseconds answerLimit(450);
constexpr std::chrono::milliseconds closingLimit(300);
constexpr std::chrono::seconds sameClock(2);

using Trigger = AravisSettings::Trigger;
using SharedFlag = std::shared_ptr<std::atomic<bool>>;

void onControlLost(ArvDevice*, SharedFlag* lost)
{
    **lost = true;
}

void freeFlag(void* lost, GClosure*)
{
    delete static_cast<SharedFlag*>(lost);
}

QStringList knownFormatsOf(ArvCamera* camera)
{
    guint count = 0;
    gint64* codes = arv_camera_dup_available_pixel_formats(camera, &count, nullptr);
    QStringList names;
    for (guint i = 0; codes && i < count; ++i) {
        if (PixelConversion::isKnown(quint32(codes[i])))
            names.append(PixelConversion::name(quint32(codes[i])));
    }
    g_free(codes);
    return names;
}

} // namespace

QVector<FoundCamera> AravisDevice::find()
{
    return AravisBus::find();
}

AravisDevice::AravisDevice() = default;

AravisDevice::~AravisDevice()
{
    close();
}

QString AravisDevice::open(const QVariantMap& settings, const QVariantMap& features)
{
    m_settings = settings;
    m_features = features;
    QString problem = locate(settings.value(QStringLiteral("device")).toString().trimmed());
    if (problem.isEmpty())
        problem = connect();
    if (problem.isEmpty())
        problem = prepare();
    if (!problem.isEmpty())
        close();
    return problem;
}

QString AravisDevice::locate(const QString& wanted)
{
    const bool isAddress = AravisBus::isAddress(wanted);
    const QString before = isAddress ? wanted : m_identity.address;
    const auto there = before.isEmpty() ? std::nullopt : GvcpProbe::identify(before, answerLimit);
    if (there && AravisBus::isMeant({*there, {}}, wanted)) {
        m_identity = *there;
        return {};
    }
    if (isAddress)
        return tr("地址 %1 上没有相机应答：请检查电源、网线和相机地址，并确认网卡与相机在同一网段").arg(wanted);
    QStringList others;
    for (const AravisBus::Seen& seen : AravisBus::look()) {
        if (AravisBus::isMeant(seen, wanted)) {
            m_identity = seen.identity;
            m_id = seen.id;
            return {};
        }
        others.append(seen.identity.serial.isEmpty() ? seen.id : seen.identity.serial);
    }
    const QString found = others.isEmpty() ? tr("没有任何相机") : others.join(QStringLiteral(", "));
    return tr("没有找到相机“%1”，现在能看到：%2。请检查电源和网线，或改用相机的网络地址").arg(wanted, found);
}

/// By address without the library's own search, which would hold up all cameras for a second. One camera at a time:
/// the library reads the descriptions of two cameras at once with tables that it does not guard.
QString AravisDevice::connect()
{
    static std::mutex oneAtATime;
    const std::lock_guard<std::mutex> lock(oneAtATime);
    GErrorHolder error;
    GObjectPtr<ArvDevice> device;
    if (m_identity.address.isEmpty()) {
        device.reset(arv_open_device(m_id.toUtf8().constData(), &error));
    } else {
        const auto control = GvcpProbe::readRegister(m_identity.address, GvcpProbe::controlPrivilege, answerLimit);
        if (control.value_or(0) != 0)
            return AravisText::inUse();
        const QString own = GvcpProbe::ownAddress(m_identity.address);
        GObjectPtr<GInetAddress> here(g_inet_address_new_from_string(own.toLatin1().constData()));
        GObjectPtr<GInetAddress> there(g_inet_address_new_from_string(m_identity.address.toLatin1().constData()));
        if (here && there)
            device.reset(arv_gv_device_new(here.get(), there.get(), &error));
    }
    const QString failure = tr("无法打开相机");
    if (!device)
        return AravisText::failed(failure, error.get());
    if (ARV_IS_GV_DEVICE(device.get()) && !arv_gv_device_is_controller(ARV_GV_DEVICE(device.get())))
        return AravisText::inUse();
    m_clock.clear();
    m_byArrival = false;
    m_controlLost = std::make_shared<std::atomic<bool>>(false);
    g_signal_connect_data(device.get(), "control-lost", G_CALLBACK(onControlLost), new SharedFlag(m_controlLost),
                          freeFlag, GConnectFlags(0));
    m_camera.reset(arv_camera_new_with_device(device.get(), &error));
    if (!m_camera)
        return AravisText::failed(failure, error.get());
    m_reader = std::make_unique<AravisFeatures>(library());
    return {};
}

QString AravisDevice::prepare()
{
    arv_camera_stop_acquisition(m_camera.get(), nullptr); // another program may have left it running
    AravisSettings writer(m_camera.get(), m_settings);
    if (!writer.writeAll())
        return writer.error();
    m_trigger = writer.trigger();
    m_missing = writer.missing();
    m_exposure = writer.exposure();
    m_warnings = writer.adjusted();
    for (auto it = m_features.constBegin(); it != m_features.constEnd(); ++it) {
        const QString problem = m_reader->write(it.key(), it.value());
        if (!problem.isEmpty())
            m_warnings.append(problem);
    }
    const QString problem = startStream();
    m_warnings.append(formatWarning());
    m_warnings.append(packetWarning());
    m_warnings.removeAll(QString());
    return problem;
}

QString AravisDevice::startStream()
{
    QString reason;
    m_clock.compare(library());
    m_lastFrame = 0; // a camera counts anew with each acquisition
    m_stream = AravisStream::start(m_camera.get(), &reason);
    return m_stream ? QString() : tr("相机不能开始采集：%1").arg(reason);
}

void AravisDevice::stopStream()
{
    arv_camera_stop_acquisition(m_camera.get(), nullptr);
    m_stream.reset();
}

QString AravisDevice::packetWarning()
{
    const int wanted = m_settings.value(QStringLiteral("packet_size")).toInt();
    if (wanted == 0 || !arv_camera_is_gv_device(m_camera.get()))
        return {};
    const int used = int(arv_camera_gv_get_packet_size(m_camera.get(), nullptr));
    return used == wanted
               ? QString()
               : tr("网络不能传送 %1 字节的数据包，已改用 %2 字节：要用更大的包，请在网卡和交换机上启用巨型帧")
                     .arg(wanted)
                     .arg(used);
}

QString AravisDevice::formatWarning()
{
    const quint32 format = arv_camera_get_pixel_format(m_camera.get(), nullptr);
    if (PixelConversion::isKnown(format))
        return {};
    return tr("不支持相机的像素格式 %1：请在相机参数中把 PixelFormat 改为 %2")
        .arg(QString::fromUtf8(arv_camera_get_pixel_format_as_string(m_camera.get(), nullptr)),
             knownFormatsOf(m_camera.get()).join(QStringLiteral(", ")));
}

/// A camera that is gone takes seconds to be let go of, so that happens aside; one that is there is free when this
/// returns.
void AravisDevice::close()
{
    if (!m_camera)
        return;
    auto closed = std::make_shared<std::promise<void>>();
    const auto done = closed->get_future();
    std::thread([closed, camera = m_camera.release(), stream = m_stream.release()] {
        arv_camera_stop_acquisition(camera, nullptr);
        delete stream;
        g_object_unref(camera);
        closed->set_value();
    }).detach();
    done.wait_for(closingLimit);
}

QString AravisDevice::apply(const QVariantMap& settings)
{
    const QVariantMap before = std::exchange(m_settings, settings);
    if (before.value(QStringLiteral("device")) != settings.value(QStringLiteral("device")))
        return tr("正在打开另一台相机");
    QVariantMap rest = settings;
    for (const QString& name : {QStringLiteral("exposure_ms"), QStringLiteral("gain_db"), QStringLiteral("timeout_ms")})
        rest.insert(name, before.value(name));
    if (rest != before) {
        stopStream();
        return prepare();
    }
    AravisSettings writer(m_camera.get(), settings);
    if (!writer.writeExposure())
        return writer.error();
    m_exposure = writer.exposure();
    m_warnings = writer.adjusted();
    m_warnings << formatWarning() << packetWarning();
    m_warnings.removeAll(QString());
    return {};
}

DeviceShot AravisDevice::capture(const DeviceRequest& request)
{
    const auto until = Clock::now() + request.limit;
    auto asked = request.asked;
    if (m_trigger == Trigger::None)
        return {DeviceShot::End::Unusable, {}, 0, warning()};
    if (m_trigger == Trigger::Software) {
        m_stream->clear();
        asked = Clock::now();
        GErrorHolder error;
        arv_camera_software_trigger(m_camera.get(), &error);
        if (error)
            return {DeviceShot::End::Lost, {}, 0, AravisText::failed(tr("相机没有接受触发"), error.get())};
    }
    for (int tooEarly = 0;;) {
        const AravisStream::Frame frame = m_stream->wait(asked, until, request.cancelled);
        if (!frame.buffer)
            return nothingCame(request, tooEarly);
        const bool early = exposed(frame) < asked;
        const quint64 number = arv_buffer_get_frame_id(frame.buffer);
        if (!early && (number != m_lastFrame || number == 0))
            return shotOf(frame);
        tooEarly += early ? 1 : 0;
        m_stream->giveBack(frame.buffer);
    }
}

/// A clock that is far off counts another time.
AravisDevice::Clock::time_point AravisDevice::exposed(const AravisStream::Frame& frame) const
{
    if (m_byArrival)
        return frame.begun;
    const auto latest = frame.begun - m_exposure;
    const auto own = m_clock.latest(std::chrono::nanoseconds(arv_buffer_get_timestamp(frame.buffer)));
    return own && std::chrono::abs(*own - latest) < sameClock ? std::min(*own, latest) : latest;
}

DeviceShot AravisDevice::nothingCame(const DeviceRequest& request, int tooEarly)
{
    const auto limit = qlonglong(request.limit.count());
    if (m_trigger == Trigger::Software && tooEarly == 1) {
        m_byArrival = true;
        return {DeviceShot::End::Late, {}, 0, tr("相机的图像时间与触发不符；已改为按到达时间判断，请重新触发")};
    }
    if (m_trigger == Trigger::Software)
        return {DeviceShot::End::Lost,
                {},
                0,
                tr("相机在触发后 %1 毫秒内没有传来图像：请检查网线；图像大而网络慢时，请增大响应时限").arg(limit)};
    const QString problem = check();
    if (!problem.isEmpty())
        return {DeviceShot::End::Lost, {}, 0, problem};
    return {DeviceShot::End::Late,
            {},
            0,
            tr("%1 毫秒内没有触发信号（%2）：请检查触发线和触发源设置")
                .arg(limit)
                .arg(m_settings.value(QStringLiteral("trigger_source")).toString())};
}

DeviceShot AravisDevice::shotOf(const AravisStream::Frame& frame)
{
    m_lastFrame = arv_buffer_get_frame_id(frame.buffer);
    const ArvBufferStatus status = arv_buffer_get_status(frame.buffer);
    DeviceShot shot;
    if (status == ARV_BUFFER_STATUS_SUCCESS) {
        shot = imageOf(frame.buffer);
    } else {
        shot.end = status == ARV_BUFFER_STATUS_ABORTED ? DeviceShot::End::Lost : DeviceShot::End::Incomplete;
        shot.problem = incomplete(status);
        m_stream->giveBack(frame.buffer);
    }
    shot.frame = m_lastFrame;
    return shot;
}

/// Of a whole frame, which goes back, or into the image.
DeviceShot AravisDevice::imageOf(ArvBuffer* buffer)
{
    using End = DeviceShot::End;
    RawImage raw;
    raw.format = arv_buffer_get_image_pixel_format(buffer);
    raw.width = arv_buffer_get_image_width(buffer);
    raw.height = arv_buffer_get_image_height(buffer);
    raw.data = static_cast<const uchar*>(arv_buffer_get_image_data(buffer, &raw.size));
    gint ignored = 0;
    arv_buffer_get_image_padding(buffer, &raw.linePadding, &ignored);
    const size_t needed = PixelConversion::bytesNeeded(raw);
    const bool whole = raw.data && needed > 0 && raw.size >= needed;
    if (whole && PixelConversion::isPlainGray(raw.format))
        return {End::Image, m_stream->lend(buffer), 0, {}};
    DeviceShot shot;
    shot.image = PixelConversion::convert(raw);
    m_stream->giveBack(buffer);
    if (!shot.image.isNull())
        shot.end = End::Image;
    else if (PixelConversion::isKnown(raw.format))
        shot = {End::Incomplete, {}, 0, incomplete(ARV_BUFFER_STATUS_SIZE_MISMATCH)};
    else
        shot = {End::Unusable, {}, 0, formatWarning()};
    return shot;
}

QString AravisDevice::incomplete(ArvBufferStatus status)
{
    switch (status) {
    case ARV_BUFFER_STATUS_TIMEOUT:
    case ARV_BUFFER_STATUS_MISSING_PACKETS:
    case ARV_BUFFER_STATUS_WRONG_PACKET_ID:
        return tr("图像不完整，丢失了数据包：请检查网线、网卡和交换机，减小数据包大小或增大数据包间隔");
    case ARV_BUFFER_STATUS_SIZE_MISMATCH:
        return tr("图像的大小与相机的设置不符");
    case ARV_BUFFER_STATUS_ABORTED:
        return tr("相机中断了采集");
    default:
        return tr("图像不完整（状态 %1）").arg(int(status));
    }
}

/// A camera that started anew answers, but no longer knows that this program controls it.
QString AravisDevice::check()
{
    if (*m_controlLost)
        return tr("与相机的连接已中断：请检查电源和网线");
    if (m_identity.address.isEmpty())
        return {};
    const auto control = GvcpProbe::readRegister(m_identity.address, GvcpProbe::controlPrivilege, answerLimit);
    if (!control)
        return tr("相机 %1 不再应答：请检查电源和网线").arg(m_identity.address);
    if (*control == 0)
        return tr("相机重新启动过，正在重新打开");
    m_clock.compare(library());
    return {};
}

quint64 AravisDevice::lostPackets() const
{
    return m_stream ? m_stream->lostPackets() : 0;
}

quint64 AravisDevice::resentPackets() const
{
    return m_stream ? m_stream->resentPackets() : 0;
}

QStringList AravisDevice::featureNames()
{
    return m_reader->names();
}

CameraFeature AravisDevice::feature(const QString& name)
{
    return m_reader->read(name);
}

/// Some features can only be written while nothing is captured, and change the size of a frame.
QString AravisDevice::writeFeature(const QString& name, const QVariant& value)
{
    stopStream();
    const QString problem = m_reader->write(name, value);
    if (problem.isEmpty() && value.isValid())
        m_features.insert(name, value);
    const QString notStarted = startStream();
    m_warnings = QStringList{formatWarning(), packetWarning()};
    m_warnings.removeAll(QString());
    return problem.isEmpty() ? notStarted : problem;
}
