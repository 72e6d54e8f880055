#include "viewer/PixelReadout.h"

#include <QColor>

QString pixelReadout(const QImage& image, const QPoint& pixel)
{
    const bool inside = pixel.x() >= 0 && pixel.y() >= 0 && pixel.x() <= image.width() && pixel.y() <= image.height();
    if (!inside)
        return QStringLiteral("out of image...");
    const QColor color = image.valid(pixel) ? image.pixelColor(pixel).toRgb() : QColor(0, 0, 0);
    return QStringLiteral("Position:[%1, %2]  Color(RGB):[%3, %4, %5] (HSV):[%6, %7, %8]")
        .arg(pixel.x())
        .arg(pixel.y())
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.hsvHue() / 2) // halved to fit 0..179; a gray pixel's -1 becomes 0
        .arg(color.hsvSaturation())
        .arg(color.value());
}
