#pragma once

#include <opencv2/core.hpp>

namespace finder {

/// Gray values below which a small share of a picture lies.
struct GrayLevels
{
    double black;  ///< 0.2 %
    double dark;   ///< 5 %
    double bright; ///< 95 %
};

GrayLevels grayLevelsOf(const cv::Mat& gray);

} // namespace finder
