#include "RingMap.h"

#include <opencv2/imgproc.hpp>

namespace finder {

namespace {

constexpr int shareOfTurnRepeated = 24; // the padding is this part of a turn

} // namespace

void RingMap::unwrap(const cv::Mat& gray, const Outline& hub, const Range& band, double step)
{
    m_hub = hub;
    m_band = band;
    m_step = step;
    const int rows = std::max(1, cvCeil((band.high - band.low) / step) + 1);
    m_turn = std::max(64, cvRound(2 * CV_PI * band.middle() / step));
    m_padding = m_turn / shareOfTurnRepeated + 1;
    m_dx.resize(static_cast<size_t>(m_turn));
    m_dy.resize(static_cast<size_t>(m_turn));
    for (int i = 0; i < m_turn; ++i) {
        const double angle = 2 * CV_PI * i / m_turn;
        const double stretch = hub.radiusAt(angle) / hub.radius;
        m_dx[i] = static_cast<float>(std::cos(angle) * stretch);
        m_dy[i] = static_cast<float>(std::sin(angle) * stretch);
    }
    m_map.create(rows, m_turn + 2 * m_padding, CV_8UC1);
    int outside = 0;
    const auto cx = static_cast<float>(hub.center.x + 0.5);
    const auto cy = static_cast<float>(hub.center.y + 0.5);
    for (int row = 0; row < rows; ++row) {
        const auto radius = static_cast<float>(radiusOfRow(row));
        uchar* out = m_map.ptr(row) + m_padding;
        for (int i = 0; i < m_turn; ++i) {
            const float x = cx + radius * m_dx[i];
            const float y = cy + radius * m_dy[i];
            const bool inImage =
                x >= 0 && y >= 0 && x < static_cast<float>(gray.cols) && y < static_cast<float>(gray.rows);
            out[i] = inImage ? gray.ptr(static_cast<int>(y))[static_cast<int>(x)] : 0;
            outside += !inImage;
        }
        std::copy_n(out + m_turn - m_padding, m_padding, out - m_padding);
        std::copy_n(out, m_padding, out + m_turn);
    }
    m_outside = static_cast<double>(outside) / (static_cast<double>(rows) * m_turn);
}

cv::Point2d RingMap::toImage(const cv::Point2d& place) const
{
    const double angle = 2 * CV_PI * (place.x - m_padding) / m_turn;
    const double radius = radiusOfRow(place.y) * m_hub.radiusAt(angle) / m_hub.radius;
    return m_hub.center + radius * cv::Point2d(std::cos(angle), std::sin(angle));
}

} // namespace finder
