#pragma once

#include "ConcentricFit.h"

#include <vector>

namespace finder {

/// The rim, measured.
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
/// Meant for an image of about a megapixel: of a larger one the halved image, whose noise is averaged already, gives
/// the rim as well for a fraction of the work.
RimFit fitRim(const cv::Mat& gray, const Outline& guess, double reach);

/// The same rim in an image whose pixels are so many times smaller.
RimFit enlarged(RimFit rim, double factor);

} // namespace finder
