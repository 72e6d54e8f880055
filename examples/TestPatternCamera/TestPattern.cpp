#include "TestPattern.h"

#include <QPointF>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int kDark = 30;
constexpr int kBright = 190;
constexpr double kDegreesAnImage = 15;

void fillDisc(QImage& image, const QPointF& center, double radius, int value)
{
    const int bottom = std::min(image.height() - 1, qFloor(center.y() + radius));
    for (int y = std::max(0, qCeil(center.y() - radius)); y <= bottom; ++y) {
        const double down = y - center.y();
        const double half = std::sqrt(std::max(0.0, radius * radius - down * down));
        const int left = std::max(0, qCeil(center.x() - half));
        const int right = std::min(image.width() - 1, qFloor(center.x() + half));
        if (left <= right)
            std::memset(image.scanLine(y) + left, value, size_t(right - left) + 1);
    }
}

} // namespace

QImage testPattern(const QSize& size, int number)
{
    QImage image(size, QImage::Format_Grayscale8);
    if (image.isNull())
        return image;
    image.fill(kDark);
    const QPointF center((size.width() - 1) / 2.0, (size.height() - 1) / 2.0);
    const double radius = 0.4 * std::min(size.width(), size.height());
    const double angle = qDegreesToRadians(std::fmod(number * kDegreesAnImage, 360.0));
    fillDisc(image, center, radius, kBright);
    fillDisc(image, center + 0.75 * radius * QPointF(std::cos(angle), -std::sin(angle)), 0.03 * radius, kDark);
    return image;
}
