#pragma once

#include "finder/OutlineFit.h"

#include <vector>

namespace finder {

/// The outline of one hole, measured at full resolution.
struct HoleFit
{
    OutlineFit fit;
    std::vector<EdgePoint> points;
};

/// Measures the outline that lies near a circle of `radius` pixels around `near`, right to a few tenths of the radius:
/// the strongest edge of each of 32 rays, of either polarity as most of them have it.
HoleFit measureOutline(const cv::Mat& gray, const cv::Point2d& near, double radius);

} // namespace finder
