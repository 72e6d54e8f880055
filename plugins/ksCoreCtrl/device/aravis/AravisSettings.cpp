#include "AravisSettings.h"

#include "../DeviceCamera.h"
#include "AravisText.h"
#include "GObjectPtr.h"

#include <algorithm>

namespace {

const auto softwareSource = QStringLiteral("software");

CameraParameter wholeNumber(const char* name, const QString& caption, int maximum, const QString& unit,
                            const QString& tip)
{
    return {QLatin1String(name), caption, CameraParameter::Kind::Whole, 0, 0, double(maximum), unit, {}, tip};
}

} // namespace

QVector<CameraParameter> AravisSettings::parameters()
{
    const auto kind = CameraParameter::Kind::Text;
    CameraParameter device{QStringLiteral("device"), tr("相机(&D)"), kind, QString(), 0, 0, {}, {}, {}};
    device.tip = tr("序列号、相机名称或网络地址");
    CameraParameter source{QStringLiteral("trigger_source"),
                           tr("触发源(&S)"),
                           CameraParameter::Kind::Choice,
                           softwareSource,
                           0,
                           0,
                           {},
                           {{softwareSource, tr("软件触发")}},
                           tr("硬件触发时，取触发请求之后开始曝光的第一幅图像")};
    for (int line = 0; line <= 6; ++line)
        source.choices.append({QStringLiteral("Line%1").arg(line), tr("硬件输入 Line%1").arg(line)});
    const QString pixels = tr("像素"), wholeTip = tr("0 表示整幅");
    return {device,
            source,
            CameraParameter::exposure(),
            CameraParameter::gain(),
            wholeNumber("region_x", tr("区域左边(&X)"), 65535, pixels, {}),
            wholeNumber("region_y", tr("区域上边(&Y)"), 65535, pixels, {}),
            wholeNumber("region_width", tr("区域宽度(&W)"), 65535, pixels, wholeTip),
            wholeNumber("region_height", tr("区域高度(&H)"), 65535, pixels, wholeTip),
            wholeNumber("packet_size", tr("数据包大小(&Z)"), 16000, tr("字节"), tr("0 表示自动选择网络能传送的最大值")),
            wholeNumber("packet_delay_us", tr("数据包间隔(&V)"), 100000, tr("微秒"), tr("多台相机共用一个网口时增大")),
            DeviceCamera::timeLimit()};
}

QString AravisSettings::settingOf(const QString& feature)
{
    static const QHash<QString, QString> owned{
        {"ExposureTime", "exposure_ms"},
        {"ExposureTimeAbs", "exposure_ms"},
        {"ExposureAuto", "exposure_ms"},
        {"Gain", "gain_db"},
        {"GainAuto", "gain_db"},
        {"TriggerSource", "trigger_source"},
        {"TriggerMode", "trigger_source"},
        {"TriggerSelector", "trigger_source"},
        {"AcquisitionMode", "trigger_source"},
        {"AcquisitionStart", "trigger_source"},
        {"AcquisitionStop", "trigger_source"},
        {"TriggerSoftware", "trigger_source"},
        {"OffsetX", "region_x"},
        {"OffsetY", "region_y"},
        {"Width", "region_width"},
        {"Height", "region_height"},
        {"GevSCPSPacketSize", "packet_size"},
        {"GevSCPD", "packet_delay_us"},
    };
    return owned.value(feature);
}

AravisSettings::AravisSettings(ArvCamera* camera, const QVariantMap& settings)
    : m_camera(camera)
    , m_settings(settings)
{
}

bool AravisSettings::writeAll()
{
    return writeTrigger() && writeExposure() && writeRegion() && writeTransport();
}

bool AravisSettings::check(const QString& what, const GError* error)
{
    if (!error)
        return true;
    if (AravisText::isSilence(error) || AravisText::isAccessDenied(error)) {
        m_error = AravisText::failed(what, error);
        return false;
    }
    m_adjusted.append(AravisText::failed(what, error));
    return true;
}

void AravisSettings::miss(const char* setting, const QString& why)
{
    m_missing.insert(QLatin1String(setting), why);
}

bool AravisSettings::setTrigger(const char* source)
{
    GErrorHolder error;
    arv_camera_set_trigger(m_camera, source, &error);
    if (!error)
        return true;
    if (!check(tr("无法设置触发源 %1").arg(QLatin1String(source)), error.get()))
        return false;
    guint count = 0;
    const char** sources = arv_camera_dup_available_trigger_sources(m_camera, &count, nullptr);
    QStringList names;
    for (guint i = 0; i < count; ++i)
        names.append(QString::fromUtf8(sources[i]));
    g_free(sources);
    m_adjusted.last() =
        tr("这台相机没有触发源 %1，可选：%2").arg(QLatin1String(source), names.join(QStringLiteral(", ")));
    m_trigger = Trigger::None;
    return true;
}

/// A camera that cannot be triggered takes one picture after the other.
bool AravisSettings::writeTrigger()
{
    GErrorHolder error;
    arv_camera_set_acquisition_mode(m_camera, ARV_ACQUISITION_MODE_CONTINUOUS, &error);
    if (!check(tr("无法设置连续采集"), error.get()))
        return false;
    const QString source = m_settings.value(QStringLiteral("trigger_source")).toString();
    const bool software = source == softwareSource;
    m_trigger = software ? Trigger::Software : Trigger::Line;
    const bool has = arv_camera_is_feature_available(m_camera, "TriggerMode", &error) &&
                     (!software || arv_camera_is_software_trigger_supported(m_camera, nullptr));
    if (!check(tr("无法读取触发方式"), error.get()))
        return false;
    if (has)
        return setTrigger(software ? "Software" : qUtf8Printable(source));
    m_trigger = Trigger::FreeRun;
    miss("trigger_source", tr("这台相机不能由软件触发；它连续拍照，取请求之后的第一幅"));
    return true;
}

double AravisSettings::within(const char* setting, double wanted, double low, double high)
{
    const double value = std::clamp(wanted, low, std::max(low, high));
    if (std::abs(value - wanted) > 1e-9 * std::max(1.0, std::abs(wanted)))
        m_adjusted.append(tr("%1 的值 %2 超出相机的范围 %3 到 %4，已改用 %5")
                              .arg(QLatin1String(setting))
                              .arg(wanted)
                              .arg(low)
                              .arg(high)
                              .arg(value));
    return value;
}

bool AravisSettings::writeExposure()
{
    GErrorHolder error;
    if (!arv_camera_is_exposure_time_available(m_camera, &error) && !error) {
        miss("exposure_ms", tr("这台相机没有曝光时间"));
        return writeGain();
    }
    if (arv_camera_is_exposure_auto_available(m_camera, nullptr))
        arv_camera_set_exposure_time_auto(m_camera, ARV_AUTO_OFF, nullptr);
    double low = 0, high = 0;
    arv_camera_get_exposure_time_bounds(m_camera, &low, &high, &error);
    if (!error) {
        const double wanted = m_settings.value(QStringLiteral("exposure_ms")).toDouble();
        arv_camera_set_exposure_time(m_camera, within("exposure_ms", wanted, low / 1000, high / 1000) * 1000, &error);
        m_exposure = std::chrono::microseconds(qint64(arv_camera_get_exposure_time(m_camera, nullptr)));
    }
    return check(tr("无法设置曝光时间"), error.get()) && writeGain();
}

/// Only the feature "Gain" is in decibels; "GainRaw" means something else with every vendor.
bool AravisSettings::writeGain()
{
    GErrorHolder error;
    if (!arv_camera_is_feature_available(m_camera, "Gain", &error) && !error) {
        miss("gain_db", tr("这台相机没有以 dB 为单位的增益；请在相机参数列表中查找 GainRaw"));
        return true;
    }
    if (arv_camera_is_gain_auto_available(m_camera, nullptr))
        arv_camera_set_gain_auto(m_camera, ARV_AUTO_OFF, nullptr);
    double low = 0, high = 0;
    arv_camera_get_float_bounds(m_camera, "Gain", &low, &high, &error);
    if (!error) {
        const double wanted = m_settings.value(QStringLiteral("gain_db")).toDouble();
        arv_camera_set_float(m_camera, "Gain", within("gain_db", wanted, low, high), &error);
    }
    return check(tr("无法设置增益"), error.get());
}

/// The length of one side as the camera takes it: whole when 0, else down to the camera's steps.
int AravisSettings::side(const char* feature, int wanted, int limit)
{
    gint64 low = 0, high = 0;
    arv_camera_get_integer_bounds(m_camera, feature, &low, &high, nullptr);
    const gint64 step = std::max<gint64>(1, arv_camera_get_integer_increment(m_camera, feature, nullptr));
    const gint64 most = limit > 0 ? std::min<gint64>(high, limit) : high;
    const gint64 length = std::clamp<gint64>(wanted > 0 ? wanted : most, low, std::max(low, most));
    return int(low + (length - low) / step * step);
}

bool AravisSettings::writeRegion()
{
    GErrorHolder error;
    const bool canMove = arv_camera_is_region_offset_available(m_camera, nullptr);
    if (canMove) {
        arv_camera_set_integer(m_camera, "OffsetX", 0, &error);
        if (!check(tr("无法设置图像区域"), error.get()))
            return false;
        arv_camera_set_integer(m_camera, "OffsetY", 0, nullptr);
    } else {
        for (const char* name : {"region_x", "region_y"})
            miss(name, tr("这台相机的图像区域不能移动"));
    }
    gint sensorWidth = 0, sensorHeight = 0;
    arv_camera_get_sensor_size(m_camera, &sensorWidth, &sensorHeight, nullptr);
    const int width = side("Width", whole("region_width"), sensorWidth);
    const int height = side("Height", whole("region_height"), sensorHeight);
    arv_camera_set_integer(m_camera, "Width", width, &error);
    if (!error)
        arv_camera_set_integer(m_camera, "Height", height, &error);
    if (!error && canMove && (whole("region_x") > 0 || whole("region_y") > 0)) {
        const auto offset = [this](const char* feature, int wanted) {
            gint64 low = 0, high = 0;
            arv_camera_get_integer_bounds(m_camera, feature, &low, &high, nullptr);
            const gint64 step = std::max<gint64>(1, arv_camera_get_integer_increment(m_camera, feature, nullptr));
            return std::clamp<gint64>(wanted, low, std::max(low, high)) / step * step;
        };
        const gint64 x = offset("OffsetX", whole("region_x")), y = offset("OffsetY", whole("region_y"));
        arv_camera_set_integer(m_camera, "OffsetX", x, &error);
        if (!error)
            arv_camera_set_integer(m_camera, "OffsetY", y, &error);
        if (!error && (x != whole("region_x") || y != whole("region_y")))
            m_adjusted.append(tr("区域位置已按相机的步长改为 (%1, %2)").arg(x).arg(y));
    }
    const bool asked = (whole("region_width") > 0 && whole("region_width") != width) ||
                       (whole("region_height") > 0 && whole("region_height") != height);
    if (asked && !error)
        m_adjusted.append(tr("区域大小已按相机的步长和范围改为 %1 × %2").arg(width).arg(height));
    return check(tr("无法设置图像区域"), error.get());
}

/// The library tries with test packets, when the stream is made, whether the network carries the size.
bool AravisSettings::writeTransport()
{
    if (!arv_camera_is_gv_device(m_camera)) {
        for (const char* name : {"packet_size", "packet_delay_us"})
            miss(name, tr("USB 相机没有网络数据包"));
        return true;
    }
    GErrorHolder error;
    const int size = whole("packet_size");
    if (size > 0)
        arv_camera_gv_set_packet_size(m_camera, size, &error);
    arv_camera_gv_set_packet_size_adjustment(m_camera, size > 0 ? ARV_GV_PACKET_SIZE_ADJUSTMENT_ON_FAILURE_ONCE
                                                                : ARV_GV_PACKET_SIZE_ADJUSTMENT_ONCE);
    if (!check(tr("无法设置数据包大小"), error.get()))
        return false;
    arv_camera_gv_set_packet_delay(m_camera, gint64(whole("packet_delay_us")) * 1000, &error);
    return check(tr("无法设置数据包间隔"), error.get());
}
