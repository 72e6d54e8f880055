#include "PixelConversion.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <iterator>

namespace {

/// How samples lie in memory.
enum class Packing {
    Bytes,  ///< 8 bits each
    Words,  ///< little-endian 16 bits, of which the lower ones count
    Triple, ///< two samples in three bytes, the upper 8 bits in the first and in the third
    Dense,  ///< bit after bit, the lowest first
    Rgb,
    Bgr,
    Yuv,
};

constexpr int gray = -1;

struct Format
{
    quint32 code;
    const char* name;
    Packing packing;
    int bits;   ///< of a sample
    int colour; ///< OpenCV's conversion to colour, or `gray`
};

// OpenCV names a colour filter array by the second row's second and third pixel, the standard by the first row's first.
constexpr int fromGr = cv::COLOR_BayerGB2RGB;
constexpr int fromRg = cv::COLOR_BayerBG2RGB;
constexpr int fromGb = cv::COLOR_BayerGR2RGB;
constexpr int fromBg = cv::COLOR_BayerRG2RGB;

constexpr Format formats[] = {
    {0x01080001, "Mono8", Packing::Bytes, 8, gray},
    {0x01100003, "Mono10", Packing::Words, 10, gray},
    {0x010C0004, "Mono10Packed", Packing::Triple, 10, gray},
    {0x010A0046, "Mono10p", Packing::Dense, 10, gray},
    {0x01100005, "Mono12", Packing::Words, 12, gray},
    {0x010C0006, "Mono12Packed", Packing::Triple, 12, gray},
    {0x010C0047, "Mono12p", Packing::Dense, 12, gray},
    {0x01100025, "Mono14", Packing::Words, 14, gray},
    {0x01100007, "Mono16", Packing::Words, 16, gray},
    {0x01080008, "BayerGR8", Packing::Bytes, 8, fromGr},
    {0x01080009, "BayerRG8", Packing::Bytes, 8, fromRg},
    {0x0108000A, "BayerGB8", Packing::Bytes, 8, fromGb},
    {0x0108000B, "BayerBG8", Packing::Bytes, 8, fromBg},
    {0x0110000C, "BayerGR10", Packing::Words, 10, fromGr},
    {0x0110000D, "BayerRG10", Packing::Words, 10, fromRg},
    {0x0110000E, "BayerGB10", Packing::Words, 10, fromGb},
    {0x0110000F, "BayerBG10", Packing::Words, 10, fromBg},
    {0x01100010, "BayerGR12", Packing::Words, 12, fromGr},
    {0x01100011, "BayerRG12", Packing::Words, 12, fromRg},
    {0x01100012, "BayerGB12", Packing::Words, 12, fromGb},
    {0x01100013, "BayerBG12", Packing::Words, 12, fromBg},
    {0x010C0026, "BayerGR10Packed", Packing::Triple, 10, fromGr},
    {0x010C0027, "BayerRG10Packed", Packing::Triple, 10, fromRg},
    {0x010C0028, "BayerGB10Packed", Packing::Triple, 10, fromGb},
    {0x010C0029, "BayerBG10Packed", Packing::Triple, 10, fromBg},
    {0x010C002A, "BayerGR12Packed", Packing::Triple, 12, fromGr},
    {0x010C002B, "BayerRG12Packed", Packing::Triple, 12, fromRg},
    {0x010C002C, "BayerGB12Packed", Packing::Triple, 12, fromGb},
    {0x010C002D, "BayerBG12Packed", Packing::Triple, 12, fromBg},
    {0x010A0056, "BayerGR10p", Packing::Dense, 10, fromGr},
    {0x010A0058, "BayerRG10p", Packing::Dense, 10, fromRg},
    {0x010A0054, "BayerGB10p", Packing::Dense, 10, fromGb},
    {0x010A0052, "BayerBG10p", Packing::Dense, 10, fromBg},
    {0x010C0057, "BayerGR12p", Packing::Dense, 12, fromGr},
    {0x010C0059, "BayerRG12p", Packing::Dense, 12, fromRg},
    {0x010C0055, "BayerGB12p", Packing::Dense, 12, fromGb},
    {0x010C0053, "BayerBG12p", Packing::Dense, 12, fromBg},
    {0x02180014, "RGB8", Packing::Rgb, 24, gray},
    {0x02180015, "BGR8", Packing::Bgr, 24, gray},
    {0x0210001F, "YUV422_8_UYVY", Packing::Yuv, 16, cv::COLOR_YUV2RGB_UYVY},
    {0x02100032, "YUV422_8", Packing::Yuv, 16, cv::COLOR_YUV2RGB_YUY2},
    {0x0210003B, "YCbCr422_8", Packing::Yuv, 16, cv::COLOR_YUV2RGB_YUY2},
    {0x02100043, "YCbCr422_8_CbYCrY", Packing::Yuv, 16, cv::COLOR_YUV2RGB_UYVY},
};

const Format* formatOf(quint32 code)
{
    const auto found =
        std::find_if(std::begin(formats), std::end(formats), [code](const Format& one) { return one.code == code; });
    return found == std::end(formats) ? nullptr : found;
}

/// Whether pixels go on from one line to the next without regard to bytes.
bool isPacked(const Format& format)
{
    return format.packing == Packing::Triple || format.packing == Packing::Dense;
}

size_t lineBytes(const Format& format, const RawImage& raw)
{
    const int bits = format.packing == Packing::Words ? 16 : format.bits;
    return size_t(raw.width) * size_t(bits) / 8 + size_t(raw.linePadding);
}

QImage::Format targetOf(const Format& format)
{
    if (format.packing == Packing::Bgr)
        return QImage::Format_BGR888;
    const bool isGray = format.colour == gray && format.packing != Packing::Rgb;
    return isGray ? QImage::Format_Grayscale8 : QImage::Format_RGB888;
}

cv::Mat view(QImage& image, int type)
{
    return cv::Mat(image.height(), image.width(), type, image.bits(), size_t(image.bytesPerLine()));
}

void fromWords(const uchar* line, int count, int bits, uchar* out)
{
    for (int x = 0; x < count; ++x)
        out[x] = uchar((line[2 * x] | line[2 * x + 1] << 8) >> (bits - 8));
}

/// The upper 8 bits of one sample of a picture without gaps.
uchar packedSample(const Format& format, const uchar* data, size_t at)
{
    if (format.packing == Packing::Triple)
        return data[at / 2 * 3 + at % 2 * 2];
    const size_t firstBit = at * size_t(format.bits) + size_t(format.bits - 8);
    const int shift = int(firstBit % 8);
    const uchar* byte = data + firstBit / 8;
    return uchar(shift == 0 ? byte[0] : byte[0] >> shift | byte[1] << (8 - shift));
}

/// The samples with 8 bits each; of a picture that has them so already, a view of it.
cv::Mat samples(const Format& format, const RawImage& raw)
{
    const size_t stride = lineBytes(format, raw);
    if (format.packing == Packing::Bytes)
        return cv::Mat(raw.height, raw.width, CV_8UC1, const_cast<uchar*>(raw.data), stride);
    cv::Mat out(raw.height, raw.width, CV_8UC1);
    size_t at = 0;
    for (int y = 0; y < raw.height; ++y) {
        if (format.packing == Packing::Words)
            fromWords(raw.data + size_t(y) * stride, raw.width, format.bits, out.ptr(y));
        for (int x = 0; isPacked(format) && x < raw.width; ++x)
            out.ptr(y)[x] = packedSample(format, raw.data, at++);
    }
    return out;
}

} // namespace

QString PixelConversion::name(quint32 format)
{
    const Format* known = formatOf(format);
    return known ? QString::fromLatin1(known->name) : QStringLiteral("0x%1").arg(format, 8, 16, QLatin1Char('0'));
}

bool PixelConversion::isKnown(quint32 format)
{
    return formatOf(format);
}

bool PixelConversion::isPlainGray(quint32 format)
{
    const Format* known = formatOf(format);
    return known && known->packing == Packing::Bytes && known->colour == gray;
}

size_t PixelConversion::bytesNeeded(const RawImage& raw)
{
    constexpr int maxSide = 65536;
    const Format* format = formatOf(raw.format);
    if (!format || raw.width <= 0 || raw.height <= 0 || raw.width > maxSide || raw.height > maxSide ||
        raw.linePadding < 0)
        return 0;
    if (isPacked(*format))
        return (size_t(raw.width) * size_t(raw.height) * size_t(format->bits) + 7) / 8;
    return lineBytes(*format, raw) * size_t(raw.height) - size_t(raw.linePadding);
}

QImage PixelConversion::convert(const RawImage& raw)
{
    const size_t needed = bytesNeeded(raw);
    if (needed == 0 || raw.size < needed)
        return {};
    const Format& format = *formatOf(raw.format);
    QImage image(raw.width, raw.height, targetOf(format));
    if (image.isNull())
        return {};
    uchar* data = const_cast<uchar*>(raw.data);
    const size_t stride = lineBytes(format, raw);
    if (format.packing == Packing::Rgb || format.packing == Packing::Bgr)
        cv::Mat(raw.height, raw.width, CV_8UC3, data, stride).copyTo(view(image, CV_8UC3));
    else if (format.packing == Packing::Yuv)
        cv::cvtColor(cv::Mat(raw.height, raw.width, CV_8UC2, data, stride), view(image, CV_8UC3), format.colour);
    else if (format.colour == gray)
        samples(format, raw).copyTo(view(image, CV_8UC1));
    else
        cv::cvtColor(samples(format, raw), view(image, CV_8UC3), format.colour);
    return image;
}
