#pragma once

#include <opencv2/core.hpp>

#include <array>

namespace finder {

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
