#pragma once

#include <opencv2/core.hpp>

namespace finder {

/// A hole as it is seen, pixels: a mouth in a surface, perhaps with a chamfer around it, and behind it a far end that
/// is seen shifted, so that part of the inner wall shows. A circle through the steepest edges would follow the far end
/// on one side and the chamfer on another; the fit tells them apart.
struct Mouth
{
    cv::Point2d center;  ///< of the mouth
    double radius = 0;   ///< of the mouth; of a tilted one between its half axes
    double blur = 1.2;   ///< standard deviation of the lens
    double chamfer = 0;  ///< width
    cv::Point2d wall;    ///< shift of the far end
    bool filled = false; ///< a valve or something else stands in the hole
    double residual = 0; ///< gray levels that the model leaves, robust standard deviation
    int pixels = 0;      ///< that the fit rests on
    bool valid = false;
};

/// What a model knows of the mouth beforehand. It decides where the picture leaves open whether a part belongs to the
/// chamfer or to the wall.
struct TaughtMouth
{
    double radius = 0; ///< half of the longer axis; 0: not known
    double ring = 0;   ///< distance from the hub; 0: not known
};

/// Fits a mouth to the pixels around `start`, whose centre and radius are right to within about a quarter of the
/// radius. `hub` is the wheel's centre: a wheel is a surface of revolution, so tilts and what shows of the wall lie
/// nearly along the direction from there. Not valid when the hole lies too near to the image's border or the fit runs
/// away from its start.
Mouth fitMouth(const cv::Mat& gray, const Mouth& start, const cv::Point2d& hub, const TaughtMouth& taught);

} // namespace finder
