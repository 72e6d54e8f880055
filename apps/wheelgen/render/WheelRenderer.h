#pragma once

#include "WheelSpec.h"

namespace wheel {

/// What is really in an image. Points in image pixels, (0, 0) the middle of the top-left pixel.
struct WheelTruth
{
    bool hole = false;
    double angle = 0; ///< hub centre to hole centre, degrees in [0, 360); as x and y meaningless without a hole
    cv::Point2d holeCenter;
    cv::Point2d hub;
    double rimRadius = 0;
    double ringRadius = 0;
    double holeRadius = 0; ///< semi-major axis of the mouth
    double edgeRadius = 0; ///< of the hole's outermost edge: chamfer, ring or counterbore
};

struct RenderedWheel
{
    cv::Mat image; ///< 8-bit gray
    WheelTruth truth;
};

/// Where the hole lies in the image that renderWheel() makes, in the middle of the exposure.
WheelTruth truthOf(const WheelSpec& spec);

/// The same spec gives the same image, byte for byte. Any thread.
RenderedWheel renderWheel(const WheelSpec& spec);

} // namespace wheel
