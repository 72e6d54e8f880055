#pragma once

#include "Geometry.h"

#include <opencv2/core.hpp>

#include <vector>

namespace finder {

/// The ring around the hub, unwrapped: column = direction, row = distance from the hub centre. Steps are about equally
/// long both ways, so that a hole stays round. A tilted ring is unwrapped along its ellipse. Keeps its buffers.
class RingMap
{
public:
    /// Unwraps the radii `band` (of the hub's circle, before tilt) with one value every `step` pixels. Pixels outside
    /// of the image read as 0 and are counted.
    void unwrap(const cv::Mat& gray, const Outline& hub, const Range& band, double step);

    /// The map, with a few columns of the other end repeated on both sides so that nothing is cut at direction 0.
    const cv::Mat& map() const { return m_map; }
    /// Number of repeated columns on each side.
    int padding() const { return m_padding; }
    /// Number of columns of one turn.
    int turn() const { return m_turn; }
    double step() const { return m_step; }
    /// Share of the ring that lies outside of the image.
    double outsideShare() const { return m_outside; }

    /// Image point of a place in the map.
    cv::Point2d toImage(const cv::Point2d& place) const;
    /// Distance of a row from the hub centre, on the untilted circle.
    double radiusOfRow(double row) const { return m_band.low + row * m_step; }

private:
    cv::Mat m_map;
    Outline m_hub;
    Range m_band;
    double m_step = 1;
    int m_turn = 0;
    int m_padding = 0;
    double m_outside = 0;
    std::vector<float> m_dx;
    std::vector<float> m_dy;
};

} // namespace finder
