#pragma once

#include "WheelSpec.h"

namespace wheel {

/// A round or elliptic hole in a surface that is already painted.
struct Pit
{
    cv::Point2d center;
    double major = 16; ///< semi-axes of the edge, pixels
    double minor = 16;
    double minorDirection = 0; ///< radians from +x, y down
    cv::Point2d wall;          ///< shift of the far end
    double chamfer = 0;        ///< width, pixels
    double shine = 0.5;        ///< of the chamfer towards the light
    double chamferGray = 1;    ///< brightness of the chamfer against the surface
    cv::Point2d edgeShift;     ///< of the chamfer's outer edge
    double deep = 14;          ///< gray value of what is seen through it
    double deepGradient = 0;   ///< change of that across the radius, as a fraction
    double deepTexture = 0;
    double wallGray = 70;
    std::uint64_t seed = 0;   ///< of the texture
    double wallShading = 0.9; ///< part of that which is missing where the wall turns from the light
};

/// A round hole whose far end is seen shifted towards the image's centre, as the camera looks into it from there.
Pit plainPit(cv::Point2d center, double radius, const WheelSpec& spec);

/// Paints the floor of a counterbore of which `pit` is the hole, in the shadow of the wall at the light's side.
void paintStep(cv::Mat& image, const Pit& pit, const HoleSpec& hole, const LightSpec& light);

/// Darkens and lights the image as that hole does; what it covers keeps the surface's brightness as its own measure.
void paintPit(cv::Mat& image, const Pit& pit, const LightSpec& light);

} // namespace wheel
