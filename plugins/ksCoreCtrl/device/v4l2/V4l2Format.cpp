#include "V4l2Format.h"

#include "../PixelConversion.h"
#include "V4l2Text.h"

#include <algorithm>
#include <linux/videodev2.h>

namespace {

constexpr int anySize = 0;
constexpr int maxSize = 16384;
constexpr quint32 compressed = 0;

/// Best first: gray as the sensor has it, then colour, then what was compressed.
struct KnownFormat
{
    quint32 fourcc;
    const char* name;
    quint32 code; ///< in PixelConversion
    int bytesPerPixel;
};
constexpr KnownFormat knownFormats[] = {
    {V4L2_PIX_FMT_GREY, "GREY", 0x01080001, 1},   {V4L2_PIX_FMT_Y10, "Y10", 0x01100003, 2},
    {V4L2_PIX_FMT_Y12, "Y12", 0x01100005, 2},     {V4L2_PIX_FMT_Y16, "Y16", 0x01100007, 2},
    {V4L2_PIX_FMT_YUYV, "YUYV", 0x02100032, 2},   {V4L2_PIX_FMT_UYVY, "UYVY", 0x0210001F, 2},
    {V4L2_PIX_FMT_RGB24, "RGB24", 0x02180014, 3}, {V4L2_PIX_FMT_BGR24, "BGR24", 0x02180015, 3},
    {V4L2_PIX_FMT_MJPEG, "MJPG", compressed, 0},  {V4L2_PIX_FMT_JPEG, "JPEG", compressed, 0},
};

const KnownFormat* known(quint32 fourcc)
{
    for (const KnownFormat& one : knownFormats) {
        if (one.fourcc == fourcc)
            return &one;
    }
    return nullptr;
}

/// Null when the end is missing, which a reader would fill up with gray.
QImage decompress(const uchar* data, size_t size)
{
    while (size > 0 && data[size - 1] == 0)
        --size; // drivers fill up the last packet
    const bool whole =
        size > 4 && data[0] == 0xFF && data[1] == 0xD8 && data[size - 2] == 0xFF && data[size - 1] == 0xD9;
    return whole ? QImage::fromData(data, int(size), "JPEG") : QImage();
}

} // namespace

QVector<CameraParameter> V4l2Format::parameters()
{
    using Kind = CameraParameter::Kind;
    CameraParameter format{
        QStringLiteral("pixel_format"), tr("像素格式(&M)"), Kind::Choice, QStringLiteral("auto"), 0, 0, {}, {}, {}};
    format.choices = {{QStringLiteral("auto"), tr("自动：优先灰度")}};
    for (const KnownFormat& one : knownFormats)
        format.choices.append({QLatin1String(one.name), QLatin1String(one.name)});
    const QString tip = tr("0 表示相机能给出的最大值");
    return {format,
            {QStringLiteral("width"), tr("宽度(&W)"), Kind::Whole, anySize, 0, maxSize, tr("像素"), {}, tip},
            {QStringLiteral("height"), tr("高度(&H)"), Kind::Whole, anySize, 0, maxSize, tr("像素"), {}, tip}};
}

QVector<quint32> V4l2Format::offered(V4l2System& system, int descriptor) const
{
    QVector<quint32> formats;
    v4l2_fmtdesc listed{};
    listed.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    for (; system.control(descriptor, VIDIOC_ENUM_FMT, &listed) == 0; ++listed.index)
        formats.append(listed.pixelformat);
    return formats;
}

/// Empty for a driver that does not list its sizes.
QSize V4l2Format::largest(V4l2System& system, int descriptor, quint32 fourcc) const
{
    QSize largest;
    v4l2_frmsizeenum listed{};
    listed.pixel_format = fourcc;
    for (; system.control(descriptor, VIDIOC_ENUM_FRAMESIZES, &listed) == 0; ++listed.index) {
        if (listed.type != V4L2_FRMSIZE_TYPE_DISCRETE)
            return {int(listed.stepwise.max_width), int(listed.stepwise.max_height)};
        const QSize size(int(listed.discrete.width), int(listed.discrete.height));
        if (qint64(size.width()) * size.height() > qint64(largest.width()) * largest.height() || largest.isEmpty())
            largest = size;
    }
    return largest;
}

QString V4l2Format::agree(V4l2System& system, int descriptor, const QVariantMap& settings)
{
    m_warnings.clear();
    const QVector<quint32> formats = offered(system, descriptor);
    const QString wantedName = settings.value(QStringLiteral("pixel_format")).toString();
    quint32 best = 0;
    quint32 wanted = 0;
    for (const KnownFormat& one : knownFormats) {
        const bool isOffered = formats.contains(one.fourcc);
        best = best == 0 && isOffered ? one.fourcc : best;
        wanted = wantedName == QLatin1String(one.name) ? one.fourcc : wanted;
    }
    v4l2_format agreed{};
    agreed.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (const int error = system.control(descriptor, VIDIOC_G_FMT, &agreed))
        return v4l2Problem("VIDIOC_G_FMT", error);
    const quint32 asked = formats.contains(wanted) ? wanted : best != 0 ? best : agreed.fmt.pix.pixelformat;
    QSize size(settings.value(QStringLiteral("width")).toInt(), settings.value(QStringLiteral("height")).toInt());
    const QSize given = size;
    if (size.isEmpty())
        size = largest(system, descriptor, asked);
    if (!size.isEmpty()) {
        agreed.fmt.pix.width = quint32(size.width());
        agreed.fmt.pix.height = quint32(size.height());
    }
    agreed.fmt.pix.pixelformat = asked;
    agreed.fmt.pix.field = V4L2_FIELD_NONE;
    agreed.fmt.pix.bytesperline = 0; // the driver's choice
    if (const int error = system.control(descriptor, VIDIOC_S_FMT, &agreed))
        return v4l2Problem("VIDIOC_S_FMT", error);
    m_fourcc = agreed.fmt.pix.pixelformat;
    m_size = QSize(int(agreed.fmt.pix.width), int(agreed.fmt.pix.height));
    m_bytesPerLine = int(agreed.fmt.pix.bytesperline);
    if (!known(m_fourcc))
        return tr("相机的像素格式 %1 不能使用：请选择能给出 GREY、YUYV 或 MJPG 的相机").arg(v4l2FormatName(m_fourcc));
    warn(wanted, given);
    return {};
}

void V4l2Format::warn(quint32 wanted, const QSize& wantedSize)
{
    if (wanted != 0 && wanted != m_fourcc)
        m_warnings << tr("相机没有像素格式 %1，使用 %2").arg(v4l2FormatName(wanted), v4l2FormatName(m_fourcc));
    if (!wantedSize.isEmpty() && wantedSize != m_size)
        m_warnings << tr("相机没有 %1 × %2 的图像，使用 %3 × %4")
                          .arg(wantedSize.width())
                          .arg(wantedSize.height())
                          .arg(m_size.width())
                          .arg(m_size.height());
}

QImage V4l2Format::image(const uchar* data, size_t size) const
{
    const KnownFormat* format = known(m_fourcc);
    if (!format || format->code == compressed)
        return format ? decompress(data, size) : QImage();
    RawImage raw;
    raw.data = data;
    raw.size = size;
    raw.width = m_size.width();
    raw.height = m_size.height();
    raw.format = format->code;
    raw.linePadding = std::max(0, m_bytesPerLine - m_size.width() * format->bytesPerPixel);
    return PixelConversion::convert(raw);
}
