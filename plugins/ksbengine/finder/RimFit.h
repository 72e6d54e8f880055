#pragma once

#include "ConcentricFit.h"

#include <vector>

namespace finder {

/// The rim at full resolution.
struct RimFit
{
    Outline outline;      ///< outer edge of the rim
    double coverage = 0;  ///< share of all directions in which the rim was seen, 0 to 1
    double residual = 0;  ///< pixels, root mean square
    double edgeWidth = 0; ///< how wide the edge is, standard deviation in pixels: the measure of focus
    bool valid = false;
    std::vector<EdgePoint> points; ///< around the guess's centre
};

/// Fits the rim in `gray` from a guess of its outer edge whose centre and radius are right to within `reach` pixels.
/// `unit` is the length in pixels of the smallest detail to look at, 1 up to about 6 megapixels: larger images are not
/// sharper in proportion.
RimFit fitRim(const cv::Mat& gray, const Outline& guess, double reach, double unit);

} // namespace finder
