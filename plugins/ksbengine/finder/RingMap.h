#pragma once

#include "Geometry.h"

#include <opencv2/core.hpp>

#include <vector>

namespace finder {

/// The ring around the hub, unwrapped: row = direction, column = distance from the hub centre. Steps are about equally
/// long both ways, so that a hole stays round. A tilted ring is unwrapped along its ellipse. Values are 16 times the
/// square root of the gray value, so that equal contrasts of dim and bright places look alike. Keeps its buffers.
class RingMap
{
public:
    /// Unwraps the radii `band` (of the hub's circle, before tilt) with one value every `step` pixels. Places outside
    /// of the image read as 0.
    void unwrap(const cv::Mat& gray, const Outline& hub, const Range& band, double step);

    /// The same ring at half the resolution, as of the last unwrap().
    RingMap halved() const;

    /// The map, with some rows of the other end repeated above and below so that nothing is cut at direction 0.
    const cv::Mat& map() const { return m_map; }
    /// Number of repeated rows at each end.
    int padding() const { return m_padding; }
    /// Number of rows of one turn.
    int turn() const { return m_turn; }
    double step() const { return m_step; }

    /// Image point of a place in the map.
    cv::Point2d toImage(const cv::Point2d& place) const;
    /// Distance of a column from the hub centre, on the untilted circle.
    double radiusOfColumn(double column) const { return m_band.low + column * m_step; }

private:
    void unwrapRay(const cv::Mat& gray, int row);
    void repeatEnds();

    cv::Mat m_map;
    Outline m_hub;
    Range m_band;
    double m_step = 1;
    int m_turn = 0;
    int m_padding = 0;
};

} // namespace finder
