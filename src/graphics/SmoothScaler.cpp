#include "graphics/SmoothScaler.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

/// The four channels of a blended pixel, 16 bits each, so that one multiplication weighs all of them.
std::uint64_t lanes(const std::uint16_t* pixel)
{
    std::uint64_t value = 0;
    std::memcpy(&value, pixel, sizeof value);
    return value;
}

/// From each of four lanes its upper byte, side by side.
QRgb packed(std::uint64_t lanes)
{
    const std::uint64_t bytes = (lanes >> 8) & 0x00ff00ff00ff00ff;
    const std::uint64_t pairs = (bytes | bytes >> 8) & 0x0000ffff0000ffff;
    return static_cast<QRgb>(pairs | pairs >> 16);
}

} // namespace

SmoothScaler::SmoothScaler(const QImage& image, const QTransform& toDevice, const QRect& target)
    : m_image(image)
    , m_channels(image.depth() / 8)
    , m_scale(toDevice.m22())
    , m_shift(target.y() - toDevice.dy())
    , m_columns(target.width())
{
    for (int x = 0; x < target.width(); ++x)
        m_columns[x] = sampleAt((target.x() + x + 0.5 - toDevice.dx()) / toDevice.m11() - 0.5, image.width());
}

SmoothScaler::Sample SmoothScaler::sampleAt(double position, int length)
{
    const double clamped = std::min(std::max(position, 0.0), length - 1.0);
    const int index = static_cast<int>(clamped);
    return {index, std::min(index + 1, length - 1), static_cast<int>((clamped - index) * 256.0)};
}

void SmoothScaler::blendRow(const Sample& row, std::uint16_t* blended) const
{
    const uchar* upper = m_image.constScanLine(row.index);
    const uchar* lower = m_image.constScanLine(row.next);
    const auto weight = static_cast<std::uint16_t>(row.weight); // products of 16 bits: eight at once
    const auto rest = static_cast<std::uint16_t>(256 - row.weight);
    const int end = (m_columns.constLast().next + 1) * m_channels;
    for (int i = m_columns.constFirst().index * m_channels; i < end; ++i) {
        const auto sum = static_cast<std::uint16_t>(upper[i] * rest + lower[i] * weight + 128);
        blended[i] = sum >> 8;
    }
}

void SmoothScaler::sampleGray(const std::uint16_t* blended, QRgb* line) const
{
    for (const Sample& sample : m_columns) {
        const unsigned left = blended[sample.index];
        const unsigned gray = (left * (256 - sample.weight) + blended[sample.next] * sample.weight + 128) >> 8;
        *line++ = 0xff000000u | gray * 0x010101u;
    }
}

void SmoothScaler::sampleColor(const std::uint16_t* blended, QRgb* line) const
{
    constexpr std::uint64_t half = 0x0080008000800080;
    for (const Sample& sample : m_columns) {
        const std::uint64_t left = lanes(blended + 4 * sample.index);
        const std::uint64_t right = lanes(blended + 4 * sample.next);
        // Modulo 2^64 a lane's borrow from the next comes back in the sum.
        *line++ = 0xff000000u | packed((left << 8) + (right - left) * static_cast<unsigned>(sample.weight) + half);
    }
}

void SmoothScaler::render(QImage& band, int top) const
{
    std::vector<std::uint16_t> blended(static_cast<std::size_t>(m_image.width()) * m_channels);
    for (int y = 0; y < band.height(); ++y) {
        const double position = (m_shift + top + y + 0.5) / m_scale - 0.5;
        blendRow(sampleAt(position, m_image.height()), blended.data());
        auto* line = reinterpret_cast<QRgb*>(band.scanLine(y));
        if (m_channels == 1)
            sampleGray(blended.data(), line);
        else
            sampleColor(blended.data(), line);
    }
}
