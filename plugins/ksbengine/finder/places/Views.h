#pragma once

#include "finder/Geometry.h"

#include <opencv2/core.hpp>

#include <array>
#include <vector>

namespace finder {

class Pyramid;

/// The ring around the hub, unwrapped: row = direction, column = distance from the hub centre. Steps are about equally
/// long both ways, so that a hole stays round. A tilted ring is unwrapped along its ellipse. Values are 16 times the
/// square root of the gray value, so that equal contrasts of dim and bright places look alike. Keeps its buffers.
class RingMap
{
public:
    /// Rows and columns come in multiples of this, as a network that halves twice wants them.
    static constexpr int multiple = 4;

    /// Unwraps the radii `band` (of the hub's circle, before tilt) with one value every `step` pixels, bilinear from
    /// the level of the image whose pixels are about as large. Places outside of the image go on as its border.
    void unwrap(Pyramid& image, const Outline& hub, const Range& band, double step);

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
    void unwrapRay(const cv::Mat& level, double scale, int row);
    void repeatEnds();

    cv::Mat m_map;
    Outline m_hub;
    Range m_band;
    double m_step = 1;
    int m_turn = 0;
    int m_padding = 0;
};

class Pyramid;

/// A square part of an image, turned and scaled.
struct HoleView
{
    static constexpr int side = 32; ///< places along a side
    static constexpr int places = side * side;

    cv::Point2d center;   ///< image pixels
    cv::Point2d along;    ///< unit vector of the view's x axis in the image
    double halfSide = 16; ///< pixels of the image

    /// Square roots of its gray values, bilinear from the level of the image whose pixels are about as large as a
    /// place. Outside of the image its border goes on.
    void sampleRoots(Pyramid& image, float* roots) const;
    /// The gray values themselves.
    void sample(Pyramid& image, float* grays) const;
};

} // namespace finder
