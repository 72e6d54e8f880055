#pragma once

#include "Geometry.h"

#include <vector>

namespace finder {

/// One measured point of an outline, in polar form around the centre that the fit starts from.
struct EdgePoint
{
    double angle = 0;    ///< radians, image axes
    double radius = 0;   ///< pixels
    double strength = 0; ///< gray levels per pixel across the edge
    double residual = 0; ///< pixels from the fitted outline; set by the fit
    bool used = false;   ///< agrees with the outline; set by the fit
};

struct OutlineFit
{
    Outline outline;
    int used = 0;        ///< points that agree with the outline
    double residual = 0; ///< their root mean square distance from it, pixels
    bool valid = false;  ///< enough points, well spread, and a solution
};

struct OutlineFitOptions
{
    bool tilted = true;           ///< whether to fit c2 and s2
    double tiltPrior = 0.02;      ///< expected hypot(c2, s2) / radius; missing arcs fall back to a circle
    double outlierFloor = 0.5;    ///< pixels below which no point counts as an outlier
    bool steepCountsMore = false; ///< weigh points by the square of their strength, as noise shifts flat edges more
};

/// Fits r(t) = radius + a cos t + b sin t + c2 cos 2t + s2 sin 2t to the points by iteratively reweighted least squares
/// with Tukey's weights, so that up to about 40 % of the points may lie anywhere, and moves the centre by (a, b).
/// Exact for small (a, b); repeat with points around the moved centre when it moved by more than a few percent of the
/// radius. Marks the points that it used.
OutlineFit fitOutline(const cv::Point2d& center, std::vector<EdgePoint>& points, const OutlineFitOptions& options);

/// The share of directions that have a used point within half of a spacing, 0 to 1, looked at in `sectors` sectors.
double coverage(const std::vector<EdgePoint>& points, int sectors);

} // namespace finder
