#include "RingMap.h"

#include <opencv2/imgproc.hpp>

#include <array>

namespace finder {

namespace {

constexpr int shareOfTurnRepeated = 24; // the padding is this part of a turn
constexpr int fractionBits = 14;

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

/// The steps k from 0 to `count` for which from + k * step lies between 0 and `last`, as [first, end).
void clip(double from, double step, double last, int* first, int* end)
{
    if (std::abs(step) < 1e-9) {
        if (from < 0 || from > last)
            *end = *first;
        return;
    }
    const double one = -from / step;
    const double two = (last - from) / step;
    *first = std::max(*first, cvCeil(std::min(one, two)));
    *end = std::min(*end, cvFloor(std::max(one, two)) + 1);
}

} // namespace

void RingMap::unwrap(const cv::Mat& gray, const Outline& hub, const Range& band, double step)
{
    m_hub = hub;
    m_band = band;
    m_step = step;
    const int columns = std::max(2, cvCeil((band.high - band.low) / step) + 1) & ~1;
    m_turn = std::max(64, cvRound(2 * CV_PI * band.middle() / step)) & ~1;
    m_padding = (m_turn / shareOfTurnRepeated + 2) & ~1;
    m_map.create(m_turn + 2 * m_padding, columns, CV_8UC1);
    for (int row = m_padding; row < m_padding + m_turn; ++row)
        unwrapRay(gray, row);
    repeatEnds();
}

void RingMap::unwrapRay(const cv::Mat& gray, int row)
{
    const double angle = 2 * CV_PI * (row - m_padding) / m_turn;
    const double stretch = m_hub.radiusAt(angle) / m_hub.radius;
    const cv::Point2d direction = stretch * cv::Point2d(std::cos(angle), std::sin(angle));
    // Half a pixel more, so that cutting the fraction rounds to the nearest pixel.
    const cv::Point2d from = m_hub.center + m_band.low * direction + cv::Point2d(0.5, 0.5);
    const cv::Point2d step = m_step * direction;
    int first = 0;
    int end = m_map.cols;
    // A quarter of a pixel on each side takes up what rounded steps add up to.
    clip(from.x - 0.25, step.x, gray.cols - 0.5, &first, &end);
    clip(from.y - 0.25, step.y, gray.rows - 0.5, &first, &end);
    uchar* const out = m_map.ptr(row);
    std::fill(out, out + m_map.cols, uchar(0));
    const Table& table = roots();
    constexpr double unit = 1 << fractionBits;
    const uchar* const data = gray.data;
    const auto stride = static_cast<std::ptrdiff_t>(gray.step[0]);
    int x = cvFloor((from.x + first * step.x) * unit);
    int y = cvFloor((from.y + first * step.y) * unit);
    const int dx = cvRound(step.x * unit);
    const int dy = cvRound(step.y * unit);
    for (int k = first; k < end; ++k, x += dx, y += dy) {
        out[k] = table[data[(y >> fractionBits) * stride + (x >> fractionBits)]];
    }
}

void RingMap::repeatEnds()
{
    for (int i = 0; i < m_padding; ++i) {
        m_map.row(m_turn + i).copyTo(m_map.row(i));
        m_map.row(m_padding + i).copyTo(m_map.row(m_padding + m_turn + i));
    }
}

RingMap RingMap::halved() const
{
    RingMap half = *this;
    half.m_map = cv::Mat();
    cv::resize(m_map, half.m_map, {m_map.cols / 2, m_map.rows / 2}, 0, 0, cv::INTER_AREA);
    half.m_step = 2 * m_step;
    half.m_band.low += 0.5 * m_step;
    half.m_turn = m_turn / 2;
    half.m_padding = m_padding / 2;
    return half;
}

cv::Point2d RingMap::toImage(const cv::Point2d& place) const
{
    const double angle = 2 * CV_PI * (place.y - m_padding) / m_turn;
    const double radius = radiusOfColumn(place.x) * m_hub.radiusAt(angle) / m_hub.radius;
    return m_hub.center + radius * cv::Point2d(std::cos(angle), std::sin(angle));
}

} // namespace finder
