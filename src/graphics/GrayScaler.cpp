#include "graphics/GrayScaler.h"

#include <algorithm>
#include <cmath>
#include <vector>

GrayScaler::GrayScaler(const QImage& image, const QTransform& toDevice, const QRect& target)
    : m_image(image)
    , m_scale(toDevice.m22())
    , m_shift(target.y() - toDevice.dy())
    , m_columns(target.width())
{
    for (int x = 0; x < target.width(); ++x)
        m_columns[x] = sampleAt((target.x() + x + 0.5 - toDevice.dx()) / toDevice.m11() - 0.5, image.width());
}

GrayScaler::Sample GrayScaler::sampleAt(double position, int length)
{
    const double clamped = std::min(std::max(position, 0.0), length - 1.0);
    const int index = static_cast<int>(clamped);
    return {index, std::min(index + 1, length - 1), static_cast<int>((clamped - index) * 256.0)};
}

void GrayScaler::blendRow(const Sample& row, uchar* blended) const
{
    const uchar* upper = m_image.constScanLine(row.index);
    const uchar* lower = m_image.constScanLine(row.next);
    const int weight = row.weight;
    const int rest = 256 - weight;
    const int last = m_columns.constLast().next;
    for (int x = m_columns.constFirst().index; x <= last; ++x)
        blended[x] = static_cast<uchar>((upper[x] * rest + lower[x] * weight + 128) >> 8);
}

void GrayScaler::sampleRow(const uchar* blended, QRgb* line) const
{
    for (const Sample& sample : m_columns) {
        const unsigned left = blended[sample.index];
        const unsigned gray = (left * (256 - sample.weight) + blended[sample.next] * sample.weight + 128) >> 8;
        *line++ = 0xff000000u | gray * 0x010101u;
    }
}

void GrayScaler::render(QImage& band, int top) const
{
    std::vector<uchar> blended(static_cast<std::size_t>(m_image.width()));
    for (int y = 0; y < band.height(); ++y) {
        const double position = (m_shift + top + y + 0.5) / m_scale - 0.5;
        blendRow(sampleAt(position, m_image.height()), blended.data());
        sampleRow(blended.data(), reinterpret_cast<QRgb*>(band.scanLine(y)));
    }
}
