#include "graphics/GrayScaler.h"

#include <algorithm>
#include <cmath>

GrayScaler::Sample GrayScaler::sampleAt(double position, int length)
{
    const double clamped = std::min(std::max(position, 0.0), length - 1.0);
    const int index = static_cast<int>(clamped);
    return {index, std::min(index + 1, length - 1), static_cast<int>((clamped - index) * 256.0)};
}

void GrayScaler::blendRows(const uchar* upper, const uchar* lower, int weight, int first, int last)
{
    uchar* row = m_row.data();
    const int rest = 256 - weight;
    for (int x = first; x <= last; ++x)
        row[x] = static_cast<uchar>((upper[x] * rest + lower[x] * weight + 128) >> 8);
}

const QImage& GrayScaler::scaled(const QImage& image, const QTransform& toDevice, const QRect& target,
                                 double pixelRatio)
{
    if (m_result.size() != target.size())
        m_result = QImage(target.size(), QImage::Format_RGB32);
    m_result.setDevicePixelRatio(pixelRatio);
    m_row.resize(image.width());
    m_columns.resize(target.width());
    for (int x = 0; x < target.width(); ++x)
        m_columns[x] = sampleAt((target.x() + x + 0.5 - toDevice.dx()) / toDevice.m11() - 0.5, image.width());
    const int first = m_columns.constFirst().index;
    const int last = m_columns.constLast().next;
    const Sample* columns = m_columns.constData();
    const uchar* row = m_row.constData();
    for (int y = 0; y < target.height(); ++y) {
        const Sample at = sampleAt((target.y() + y + 0.5 - toDevice.dy()) / toDevice.m22() - 0.5, image.height());
        blendRows(image.constScanLine(at.index), image.constScanLine(at.next), at.weight, first, last);
        auto* line = reinterpret_cast<QRgb*>(m_result.scanLine(y));
        for (int x = 0; x < target.width(); ++x) {
            const Sample& sample = columns[x];
            const unsigned left = row[sample.index];
            const unsigned gray = (left * (256 - sample.weight) + row[sample.next] * sample.weight + 128) >> 8;
            line[x] = 0xff000000u | gray * 0x010101u;
        }
    }
    return m_result;
}
