#pragma once

#include "OutlineFit.h"

#include <vector>

namespace finder {

/// What is known of the whole image when a spot is judged.
struct ImageLevels
{
    double black = 0; ///< gray value of the darkest parts
    double noise = 2; ///< standard deviation of the camera's noise, gray levels
};

/// The camera's noise, from how much neighbouring pixels differ beyond a straight line; a sample of rows is read.
double estimateNoise(const cv::Mat& gray);

/// What makes a spot a hole, each 0 to 1; their product is the score.
struct HoleScore
{
    double evidence = 0; ///< brighter outside than inside all round, looked at sector by sector
    double roundness =
        0; ///< how near the edge points lie to one outline, beyond what noise explains, and how round it is
    double darkness = 0; ///< how black it is inside, measured against its surroundings and the image's black
    double size = 0;     ///< how well the radius fits what the model expects

    double place = 1; ///< how near to the middle of the ring that the model names

    double total() const { return evidence * roundness * darkness * size * place; }
};

/// One hole, measured at full resolution.
struct HoleFit
{
    OutlineFit fit;
    HoleScore score;
    std::vector<EdgePoint> points;
};

/// Measures the hole whose middle is expected within about half a radius of `near`, with a radius of about `expected`
/// pixels; `radius` is the range that the model allows. A spot without a usable outline scores 0.
HoleFit measureHole(const cv::Mat& gray, const cv::Point2d& near, double expected, const Range& radius,
                    const ImageLevels& levels);

} // namespace finder
