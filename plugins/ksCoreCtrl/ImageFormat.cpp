#include "ImageFormat.h"

PixelFormat pixelFormat(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Grayscale8:
        return PixelFormat::Gray8;
    case QImage::Format_Grayscale16:
        return PixelFormat::Gray16;
    case QImage::Format_RGB888:
        return PixelFormat::Rgb24;
    case QImage::Format_BGR888:
        return PixelFormat::Bgr24;
    case QImage::Format_RGBX64:
    case QImage::Format_RGBA64:
        return PixelFormat::Rgb48;
    default:
        return image.isNull() ? PixelFormat::None : PixelFormat::Rgb32;
    }
}
