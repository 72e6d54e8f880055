#include "HoleCandidates.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>

namespace finder {

namespace {

constexpr double meanWidth = 0.8;     // of the box whose mean stands for a place, in radii
constexpr double aroundAt = 1.6;      // where the surroundings are looked at, in radii
constexpr double insideAt = 0.45;     // where a valve in the hole leaves it dark, in radii
constexpr double leastContrast = 6.0; // gray levels

using Offsets = std::array<cv::Point, 8>;

Offsets circleOffsets(double radius)
{
    Offsets offsets;
    for (size_t i = 0; i < offsets.size(); ++i) {
        const double angle = 2 * CV_PI * static_cast<double>(i) / offsets.size();
        offsets[i] = {cvRound(radius * std::cos(angle)), cvRound(radius * std::sin(angle))};
    }
    return offsets;
}

/// Keeps the three smallest values seen at each place. Two of the eight may be dark without harm: the edge of the ledge
/// or a shadow.
void keepLowest(const uchar* value, int count, uchar* lowest, uchar* second, uchar* third)
{
    for (int i = 0; i < count; ++i) {
        const uchar a = std::max(lowest[i], value[i]);
        lowest[i] = std::min(lowest[i], value[i]);
        const uchar b = std::max(second[i], a);
        second[i] = std::min(second[i], a);
        third[i] = std::min(third[i], b);
    }
}

struct Spot
{
    int value;
    cv::Point at;
};

std::vector<Spot> peaks(const cv::Mat& contrast, int firstRow, int lastRow, int firstColumn, int lastColumn)
{
    std::vector<Spot> spots;
    for (int y = std::max(1, firstRow); y <= std::min(contrast.rows - 2, lastRow); ++y) {
        const uchar* row = contrast.ptr(y);
        const uchar* above = contrast.ptr(y - 1);
        const uchar* below = contrast.ptr(y + 1);
        for (int x = firstColumn; x < lastColumn; ++x) {
            const uchar value = row[x];
            if (value > leastContrast && value >= row[x - 1] && value > row[x + 1] && value >= above[x] &&
                value > below[x])
                spots.push_back({value, {x, y}});
        }
    }
    std::stable_sort(spots.begin(), spots.end(), [](const Spot& a, const Spot& b) { return a.value > b.value; });
    return spots;
}

bool isNear(const HoleCandidate& known, const cv::Point2d& point)
{
    const cv::Point2d d = known.point - point;
    return d.dot(d) < known.size * known.size;
}

} // namespace

void HoleCandidates::computeContrast(const cv::Mat& map, double radius)
{
    const int width = std::max(1, cvRound(meanWidth * radius) | 1);
    cv::blur(map, m_mean, {width, width});
    const Offsets around = circleOffsets(aroundAt * radius);
    const Offsets within = circleOffsets(insideAt * radius);
    m_contrast.create(map.size(), CV_8UC1);
    m_contrast.setTo(0);
    const int margin = cvCeil(aroundAt * radius) + 1;
    const int count = map.cols - 2 * margin;
    if (count <= 0)
        return;
    const auto size = static_cast<size_t>(count);
    for (int y = margin; y < map.rows - margin; ++y) {
        m_lowest.assign(size, 255);
        m_second.assign(size, 255);
        m_third.assign(size, 255);
        for (const cv::Point& offset : around)
            keepLowest(m_mean.ptr(y + offset.y) + margin + offset.x, count, m_lowest.data(), m_second.data(),
                       m_third.data());
        const uchar* center = m_mean.ptr(y) + margin;
        const uchar* left = m_mean.ptr(y + within[4].y) + margin + within[4].x;
        const uchar* right = m_mean.ptr(y + within[0].y) + margin + within[0].x;
        const uchar* up = m_mean.ptr(y + within[6].y) + margin + within[6].x;
        const uchar* down = m_mean.ptr(y + within[2].y) + margin + within[2].x;
        uchar* out = m_contrast.ptr(y) + margin;
        for (int i = 0; i < count; ++i) {
            const int round = (left[i] + right[i] + up[i] + down[i] + 2) / 4;
            const int inside = std::min<int>(center[i], round);
            out[i] = static_cast<uchar>(std::max(0, m_third[i] - inside));
        }
    }
}

void HoleCandidates::find(const RingMap& ring, const Range& radii, double radius, int most,
                          std::vector<HoleCandidate>* found)
{
    computeContrast(ring.map(), radius / ring.step());
    const int firstRow = cvFloor((radii.low - ring.radiusOfRow(0)) / ring.step());
    const int lastRow = cvCeil((radii.high - ring.radiusOfRow(0)) / ring.step());
    const int firstColumn = ring.padding();
    int added = 0;
    for (const Spot& spot : peaks(m_contrast, firstRow, lastRow, firstColumn, firstColumn + ring.turn())) {
        const cv::Point2d point = ring.toImage(spot.at);
        if (std::any_of(found->begin(), found->end(), [&](const HoleCandidate& known) { return isNear(known, point); }))
            continue;
        found->push_back({point, static_cast<double>(spot.value), radius});
        if (++added == most)
            return;
    }
}

} // namespace finder
