#pragma once

#include "WheelSpec.h"

namespace wheel {

/// The centre of the valve hole in image pixels; also where it would be when it is absent.
cv::Point2d holeCenter(const WheelSpec& spec);

/// Paints bore, bolt holes, drain holes, marks and, if present, the valve hole with its valve.
void paintHoles(cv::Mat& image, const WheelSpec& spec);

} // namespace wheel
