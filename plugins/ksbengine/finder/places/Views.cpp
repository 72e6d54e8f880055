#include "Views.h"

#include "finder/Edges.h"
#include "finder/Pyramid.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace finder {

namespace {

constexpr int repeated = 16;     // rows: as far as the network that reads the map looks
constexpr int fractionBits = 11; // of a place between pixels

using Table = std::array<uchar, 256>;

const Table& roots()
{
    static const Table table = [] {
        Table values{};
        for (int i = 0; i < 256; ++i)
            values[i] = cv::saturate_cast<uchar>(16 * std::sqrt(static_cast<double>(i)));
        return values;
    }();
    return table;
}

int toMultiple(double count)
{
    return (cvCeil(count) + RingMap::multiple - 1) / RingMap::multiple * RingMap::multiple;
}

} // namespace

void RingMap::unwrap(Pyramid& image, const Outline& hub, const Range& band, double step)
{
    m_hub = hub;
    m_band = band;
    m_step = step;
    m_padding = repeated;
    m_turn = toMultiple(std::max(64.0, 2 * CV_PI * band.middle() / step));
    m_map.create(m_turn + 2 * m_padding, toMultiple((band.high - band.low) / step + 1), CV_8UC1);
    const int k = image.levelForStep(step);
    const cv::Mat& level = image.level(k);
    for (int row = m_padding; row < m_padding + m_turn; ++row)
        unwrapRay(level, 1 / Pyramid::scale(k), row);
    repeatEnds();
}

void RingMap::unwrapRay(const cv::Mat& level, double scale, int row)
{
    const double angle = 2 * CV_PI * (row - m_padding) / m_turn;
    const double stretch = m_hub.radiusAt(angle) / m_hub.radius;
    const cv::Point2d direction = stretch * scale * cv::Point2d(std::cos(angle), std::sin(angle));
    const cv::Point2d from =
        scale * (m_hub.center + cv::Point2d(0.5, 0.5)) - cv::Point2d(0.5, 0.5) + m_band.low * direction;
    constexpr int unit = 1 << fractionBits;
    constexpr int mask = unit - 1;
    const int dx = cvRound(m_step * direction.x * unit);
    const int dy = cvRound(m_step * direction.y * unit);
    const int mostX = (level.cols - 1) * unit - 1;
    const int mostY = (level.rows - 1) * unit - 1;
    const auto stride = static_cast<std::ptrdiff_t>(level.step[0]);
    const Table& table = roots();
    uchar* const out = m_map.ptr(row);
    int x = cvRound(from.x * unit);
    int y = cvRound(from.y * unit);
    for (int k = 0; k < m_map.cols; ++k, x += dx, y += dy) {
        const int u = std::clamp(x, 0, mostX);
        const int v = std::clamp(y, 0, mostY);
        const uchar* const p = level.data + (v >> fractionBits) * stride + (u >> fractionBits);
        const int fx = u & mask;
        const int fy = v & mask;
        const int upper = p[0] * unit + fx * (p[1] - p[0]);
        const int lower = p[stride] * unit + fx * (p[stride + 1] - p[stride]);
        // 8 bits of gray and twice the fraction fit into 31.
        out[k] = table[(upper * (unit / 2) + fy * ((lower - upper) / 2) + (1 << (2 * fractionBits - 2))) >>
                       (2 * fractionBits - 1)];
    }
}

void RingMap::repeatEnds()
{
    for (int i = 0; i < m_padding; ++i) {
        m_map.row(m_turn + i).copyTo(m_map.row(i));
        m_map.row(m_padding + i).copyTo(m_map.row(m_padding + m_turn + i));
    }
}

cv::Point2d RingMap::toImage(const cv::Point2d& place) const
{
    const double angle = 2 * CV_PI * (place.y - m_padding) / m_turn;
    const double radius = radiusOfColumn(place.x) * m_hub.radiusAt(angle) / m_hub.radius;
    return m_hub.center + radius * cv::Point2d(std::cos(angle), std::sin(angle));
}

void HoleView::sample(Pyramid& image, float* grays) const
{
    const double step = 2 * halfSide / side;
    const int k = image.levelForStep(step);
    const cv::Mat& level = image.level(k);
    const cv::Point2d middle = Pyramid::toLevel(center, k);
    const cv::Point2d right = step / Pyramid::scale(k) * along;
    const cv::Point2d down(-right.y, right.x);
    const auto mostX = static_cast<float>(level.cols - 1);
    const auto mostY = static_cast<float>(level.rows - 1);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const cv::Point2d at = middle + (column + 0.5 - side / 2.0) * right + (row + 0.5 - side / 2.0) * down;
            const float x = std::clamp(static_cast<float>(at.x), 0.0F, mostX);
            const float y = std::clamp(static_cast<float>(at.y), 0.0F, mostY);
            *grays++ = grayAt(level, x, y);
        }
    }
}

void HoleView::sampleRoots(Pyramid& image, float* roots) const
{
    sample(image, roots);
    for (int i = 0; i < places; ++i)
        roots[i] = std::sqrt(roots[i]);
}

} // namespace finder
