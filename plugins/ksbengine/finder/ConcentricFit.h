#pragma once

#include "OutlineFit.h"

#include <vector>

namespace finder {

/// One of several concentric circles.
struct ConcentricCircle
{
    double radius = 0;
    double support = 0; ///< share of the rays that show it, 0 to 1
};

struct ConcentricFit
{
    cv::Point2d center;
    double c2 = 0; ///< common tilt, as in Outline
    double s2 = 0;
    std::vector<ConcentricCircle> circles; ///< innermost first
    double residual = 0;                   ///< root mean square of the used points, pixels
    bool valid = false;
};

/// Finds the common centre of edges that lie on an unknown number of concentric circles, such as the two edges of a
/// rim's bevel: on the lit side one of them is seen, on the far side the other, so that a single circle through the
/// strongest edges would be pulled aside. `points` are all edges of `rays` rays around a centre that is right to within
/// `reach` pixels; points off every circle do no harm. Marks the points that it used.
ConcentricFit fitConcentric(const cv::Point2d& center, std::vector<EdgePoint>& points, int rays, double reach);

} // namespace finder
