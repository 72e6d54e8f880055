#include "db/archive/JpegEncoder.h"

#include <memory>
#include <turbojpeg.h>

namespace {

struct Pixels
{
    QImage image;
    TJPF order; ///< of the bytes in memory
};

/// A pixel of RGB32 is one number, so its bytes lie as the processor orders them.
constexpr TJPF rgb32Order = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? TJPF_BGRX : TJPF_XRGB;

Pixels pixelsOf(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Grayscale8:
        return {image, TJPF_GRAY};
    case QImage::Format_RGB888:
        return {image, TJPF_RGB};
    case QImage::Format_BGR888:
        return {image, TJPF_BGR};
    case QImage::Format_RGBX8888:
    case QImage::Format_RGBA8888:
        return {image, TJPF_RGBX};
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
        return {image, rgb32Order};
    default:
        if (image.format() == QImage::Format_Grayscale16 || (image.colorCount() > 0 && image.allGray()))
            return {image.convertToFormat(QImage::Format_Grayscale8), TJPF_GRAY};
        return {image.convertToFormat(QImage::Format_RGB32), rgb32Order};
    }
}

} // namespace

QByteArray encodeJpeg(const QImage& image, int quality, QString* error)
{
    const auto [pixels, order] = pixelsOf(image);
    if (pixels.isNull()) {
        *error = QStringLiteral("no image");
        return {};
    }
    const std::unique_ptr<void, int (*)(tjhandle)> jpeg(tjInitCompress(), tjDestroy);
    const TJSAMP sampling = order == TJPF_GRAY ? TJSAMP_GRAY : TJSAMP_420;
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const int code = tjCompress2(jpeg.get(), pixels.constBits(), pixels.width(), pixels.bytesPerLine(), pixels.height(),
                                 order, &bytes, &size, sampling, quality, TJFLAG_ACCURATEDCT);
    const std::unique_ptr<unsigned char, void (*)(unsigned char*)> owner(bytes, tjFree);
    if (code == 0)
        return {reinterpret_cast<const char*>(bytes), static_cast<int>(size)};
    *error = QString::fromLocal8Bit(tjGetErrorStr2(jpeg.get()));
    return {};
}
