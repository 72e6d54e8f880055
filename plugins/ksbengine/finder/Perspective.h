#pragma once

#include "Geometry.h"

#include <complex>
#include <optional>
#include <vector>

/// The pin-hole view of a wheel: hub axis at another depth than the rim's edge, and the rim seen at a slant.
namespace finder {

/// A station's camera, looking straight at the plane in which the rims' edges lie. Zeros are unknown.
struct Camera
{
    cv::Point2d principal; ///< where the optical axis meets the image, pixels; (0, 0): the image's middle
    double distance = 0;   ///< from the camera to the rims' plane, millimetres
    double pixelSize = 0;  ///< side of a pixel in the rims' plane, millimetres

    /// The same camera with its principal point set, for an image of this size.
    Camera in(const cv::Size& image) const;
};

/// The slope of the rim's plane: by how much it recedes from the camera for each unit to the right (x) and down (y).
using Slope = std::complex<double>;

/// The image of the hub axis at `depth` millimetres behind the rim's plane, from the projected centre of the rim:
/// pp + (centre - pp) Z / (Z + depth), less what the axis of a slanted wheel moves aside on its way. Without distance
/// or depth it is the rim's centre.
cv::Point2d axisAtDepth(const cv::Point2d& rimCenter, const Slope& slope, const Camera& camera, double depth);

/// The two slopes that give a circle this outline. With x the wheel's place off the optical axis over the distance and
/// m = (c2 + i s2) / radius, the square of (slope + x) is x^2 - 4 m, to second order in slope and x. The one nearer to
/// zero comes first.
std::pair<Slope, Slope> slopesOf(const Outline& rim, const Camera& camera);

/// The slope to reckon with: the mean of both, weighted by the prior that wheels lie flat to within `sigma`. A wheel on
/// the optical axis looks the same slanted either way, and its slope comes out as zero.
Slope expectedSlope(const Outline& rim, const Camera& camera, double sigma);

/// The projected centre of the circle, which lies farther from the camera's nearer side than the centre of its image:
/// to first order by slope * radius * (radius / distance).
cv::Point2d projectedCenter(const Outline& rim, const Slope& slope, const Camera& camera);

/// Where the hub axis is seen at `depth`, by all that is known of the camera; the outline's centre when nothing is.
cv::Point2d hubAxis(const Outline& rim, const Camera& camera, double depth);

/// One picture of a wheel, for learning how deep its hole lies.
struct DepthSight
{
    Outline rim;
    cv::Point2d hole;
};

struct DepthEstimate
{
    double depth = 0; ///< of the hole behind the rim's edge, millimetres
    double sigma = 0; ///< its standard deviation
};

/// The depth from two or more pictures of one wheel in different places: from the axis at the true depth, the hole's
/// distance is the same share of the rim's radius in each, however the wheel is turned. `sigma` is the error of such a
/// distance in pixels; where the pictures disagree by more, their disagreement is taken. Nothing for an unknown camera
/// distance, fewer than two pictures, or places that leave the depth open altogether.
std::optional<DepthEstimate> estimateDepth(const std::vector<DepthSight>& sights, const Camera& camera, double sigma);

} // namespace finder
