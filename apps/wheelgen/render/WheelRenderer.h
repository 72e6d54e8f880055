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

// The steps of a rendering, in their order.

/// Paints background, wheel face and windows, without holes or blemishes: 32-bit float, gray values, not limited.
cv::Mat renderFace(const WheelSpec& spec);

/// About the gray value that renderFace() gives a flat part of the ledge.
double ledgeGray(const WheelSpec& spec);

/// The same of the ledge around the valve hole, where it slopes towards one side of the light.
double holeSurfaceGray(const WheelSpec& spec);

/// Adds what lies on a wheel and is no part of its shape: lettering, dirt, scratches and glare. The valve hole comes
/// later and stays as dark and as sharp as without them.
void paintBlemishes(cv::Mat& image, const WheelSpec& spec);

/// The centre of the valve hole in image pixels; also where it would be when it is absent.
cv::Point2d holeCenter(const WheelSpec& spec);

/// Paints bore, bolt holes, drain holes, marks and, if present, the valve hole with its valve.
void paintHoles(cv::Mat& image, const WheelSpec& spec);

/// The centre of a mark in image pixels.
cv::Point2d markCenter(const WheelSpec& spec, const MarkSpec& mark);

/// Paints everything that lies about the valve hole and could be taken for it.
void paintMarks(cv::Mat& image, const WheelSpec& spec);

/// Light, lens, motion and sensor, in this order: turns the painted scene (32-bit float) into the camera's 8-bit image.
cv::Mat photograph(cv::Mat scene, const WheelSpec& spec);

} // namespace wheel
