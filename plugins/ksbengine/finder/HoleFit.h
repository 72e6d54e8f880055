#pragma once

#include "OutlineFit.h"

#include <vector>

namespace finder {

/// What makes a spot a hole, each 0 to 1; their product is the score.
struct HoleScore
{
    double evidence = 0;  ///< share of the outline with an edge that fits
    double roundness = 0; ///< how near the edge points lie to one outline
    double darkness = 0;  ///< how black it is inside, measured against its surroundings and the image's black
    double size = 0;      ///< how well the radius fits what the model expects

    double total() const { return evidence * roundness * darkness * size; }
};

/// One hole, measured at full resolution.
struct HoleFit
{
    OutlineFit fit;
    HoleScore score;
    std::vector<EdgePoint> points;
};

/// Measures the hole whose middle is expected within about half a radius of `near`. `radius` is the range of its radius
/// in pixels, `black` the gray value of the image's darkest parts. A spot without a usable outline scores 0.
HoleFit measureHole(const cv::Mat& gray, const cv::Point2d& near, const Range& radius, double black);

} // namespace finder
