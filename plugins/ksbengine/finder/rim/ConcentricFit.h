#pragma once

#include "finder/OutlineFit.h"

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
    double lead = 0;                       ///< radius of the outermost circle with strong edges
    double residual = 0;                   ///< root mean square of the used points, pixels
    bool valid = false;
};

struct ConcentricOptions
{
    double reach = 4;   ///< pixels by which the centre may be off
    double bin = 1;     ///< pixels; width of the bins of the histogram of radii
    double near = 1;    ///< pixels within which a point belongs to a circle in the end
    double tilt = 0.01; ///< expected tilt, as a share of the radius
};

/// Finds the common centre of edges that lie on an unknown number of concentric circles, such as the two edges of a
/// rim's bevel: on the lit side one of them is seen, on the far side the other, so that a single circle through the
/// strongest edges would be pulled aside. `points` are all edges of `rays` rays around a centre that is right to within
/// the reach; points off every circle do no harm. Marks the points that it used.
ConcentricFit fitConcentric(const cv::Point2d& center, std::vector<EdgePoint>& points, int rays,
                            const ConcentricOptions& options);

} // namespace finder
