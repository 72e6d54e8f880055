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
    double shine = 0.5;        ///< of the chamfer
    double deep = 14;          ///< gray value of what is seen through it
    double wallGray = 70;
};

/// Darkens and lights the image as that hole does; what it covers keeps the surface's brightness as its own measure.
void paintPit(cv::Mat& image, const Pit& pit, const LightSpec& light);

/// The centre of the valve hole in image pixels; also where it would be when it is absent.
cv::Point2d holeCenter(const WheelSpec& spec);

/// Paints bore, bolt holes, drain holes and, if present, the valve hole with its valve.
void paintHoles(cv::Mat& image, const WheelSpec& spec);

} // namespace wheel
