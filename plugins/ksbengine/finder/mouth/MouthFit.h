#pragma once

#include <opencv2/core.hpp>

namespace finder {

/// What surrounds a mouth, by the width of the ring that is seen; a picture from one side does not show its depth.
enum class MouthEdge { Plain, Chamfer, Counterbore };

/// A hole as it is seen, pixels: the mouth, which is the bore's upper edge, in most wheels a chamfer or counterbore
/// around it, and behind it a far end that is seen shifted, so that part of the inner wall shows. A circle through the
/// steepest edges would follow the far end on one side and the outer edge on another; the fit separates them.
struct Mouth
{
    cv::Point2d center;      ///< of the mouth
    double radius = 0;       ///< half of the mouth's longer axis, which is its radius as drilled
    double axisRatio = 1;    ///< shorter by longer axis
    double axisAngle = 0;    ///< direction of the longer axis, radians from +x, y down
    cv::Point2d outerCenter; ///< of the outer edge of chamfer or counterbore, which lies higher than the mouth
    double outerRadius = 0;  ///< half of its longer axis; `radius` without one. Of a start 0: not known
    MouthEdge edge = MouthEdge::Plain;
    double blur = 1.2;   ///< standard deviation of the lens
    cv::Point2d wall;    ///< shift of the far end
    bool filled = false; ///< a valve or something else stands in the hole; only a band along the mouth counts
    double residual = 0; ///< gray levels that the model leaves, robust standard deviation
    double spread = 0;   ///< standard deviation of the centre that noise and what is not known of the hole explain
    int pixels = 0;      ///< that the fit rests on, averaged ones of a large hole
    bool valid = false;
};

/// What a model knows of the mouth beforehand. It decides where the picture leaves open whether a part belongs to the
/// chamfer or to the wall.
struct TaughtMouth
{
    double radius = 0; ///< half of the longer axis; 0: not known
    double ring = 0;   ///< distance from the hub; 0: not known
};

/// Fits a mouth to the pixels around `start`, whose centre is right to within about 0.15 of the radius and whose radius
/// to within about 15 %; its outer radius, where it is given, likewise. `hub` is the wheel's centre: a wheel is a
/// surface of revolution, so tilts and what shows of the wall lie nearly along the direction from there. Not valid when
/// the hole lies too near to the image's border or the fit runs away from its start.
Mouth fitMouth(const cv::Mat& gray, const Mouth& start, const cv::Point2d& hub, const TaughtMouth& taught);

} // namespace finder
