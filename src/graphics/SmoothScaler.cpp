#include "graphics/SmoothScaler.h"

#include <algorithm>
#include <cstring>

namespace {

/// The four channels of a pixel, 16 bits each, so that one multiplication weighs all of them.
std::uint64_t lanes(const uchar* pixel)
{
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, pixel, sizeof bytes);
    const std::uint64_t pairs = (bytes | std::uint64_t(bytes) << 16) & 0x0000ffff0000ffff;
    return (pairs | pairs << 8) & 0x00ff00ff00ff00ff;
}

/// Two pixels, the second by `weight` / 256.
std::uint64_t blended(std::uint64_t first, std::uint64_t second, int weight)
{
    constexpr std::uint64_t half = 0x0080008000800080;
    const auto share = static_cast<unsigned>(weight);
    return ((first * (256 - share) + second * share + half) >> 8) & 0x00ff00ff00ff00ff;
}

/// The lower byte of each of four lanes, side by side.
QRgb packed(std::uint64_t lanes)
{
    const std::uint64_t pairs = (lanes | lanes >> 8) & 0x0000ffff0000ffff;
    return static_cast<QRgb>(pairs | pairs >> 16);
}

} // namespace

SmoothScaler::SmoothScaler(const QImage& image, const QTransform& toDevice, const QRect& target, Code code)
    : m_image(image)
    , m_scale(toDevice.m22())
    , m_shift(target.y() - toDevice.dy())
    , m_columns(static_cast<std::size_t>(target.width()))
{
    for (int x = 0; x < target.width(); ++x)
        m_columns[x] = sampleAt((target.x() + x + 0.5 - toDevice.dx()) / toDevice.m11() - 0.5, image.width());
    // that one reads a pixel and its neighbour together
    if (code == Fastest && image.width() > 1 && WideSampler::isSupported())
        m_wide.emplace(m_columns, image.depth() == 8 ? WideSampler::Grays : WideSampler::Colors);
}

Sample SmoothScaler::sampleAt(double position, int length)
{
    const double clamped = std::min(std::max(position, 0.0), length - 1.0);
    const int index = std::min(static_cast<int>(clamped), std::max(length - 2, 0));
    return {index, std::min(index + 1, length - 1), static_cast<int>((clamped - index) * 256.0)};
}

RowPair SmoothScaler::rowsFor(int row) const
{
    const Sample sample = sampleAt((m_shift + row + 0.5) / m_scale - 0.5, m_image.height());
    return {m_image.constScanLine(sample.index), m_image.constScanLine(sample.next), sample.weight};
}

void SmoothScaler::renderGray(const RowPair& rows, std::uint16_t* blended, QRgb* line) const
{
    const uchar* upper = rows.upper;
    const uchar* lower = rows.lower;
    const auto weight = static_cast<std::uint16_t>(rows.weight); // products of 16 bits: eight at once
    const auto rest = static_cast<std::uint16_t>(256 - rows.weight);
    for (int i = m_columns.front().index; i <= m_columns.back().next; ++i) {
        const auto sum = static_cast<std::uint16_t>(upper[i] * rest + lower[i] * weight + 128);
        blended[i] = sum >> 8;
    }
    if (m_wide) {
        m_wide->sampleGrays(blended, line);
        return;
    }
    for (const Sample& column : m_columns) {
        const unsigned left = blended[column.index];
        const unsigned gray = (left * (256 - column.weight) + blended[column.next] * column.weight + 128) >> 8;
        *line++ = 0xff000000u | gray * 0x010101u;
    }
}

void SmoothScaler::renderColors(const RowPair& rows, const RowPair& next, QRgb* line) const
{
    if (m_wide) {
        m_wide->sampleColors(rows, next, line);
        return;
    }
    const auto between = [&](int x) {
        return blended(lanes(rows.upper + 4 * x), lanes(rows.lower + 4 * x), rows.weight);
    };
    for (const Sample& column : m_columns)
        *line++ = 0xff000000u | packed(blended(between(column.index), between(column.next), column.weight));
}

void SmoothScaler::render(QImage& band, int top) const
{
    const bool gray = m_image.depth() == 8;
    std::vector<std::uint16_t> blended(gray ? static_cast<std::size_t>(m_image.width()) : 0);
    RowPair rows = rowsFor(top);
    for (int y = 0; y < band.height(); ++y) {
        const RowPair next = rowsFor(top + y + 1);
        auto* line = reinterpret_cast<QRgb*>(band.scanLine(y));
        if (gray)
            renderGray(rows, blended.data(), line);
        else
            renderColors(rows, next, line);
        rows = next;
    }
}
