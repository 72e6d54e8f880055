#pragma once

#include "WheelSpec.h"

namespace wheel {

/// The centre of a mark in image pixels.
cv::Point2d markCenter(const WheelSpec& spec, const MarkSpec& mark);

/// Paints everything that lies about the valve hole and could be taken for it.
void paintMarks(cv::Mat& image, const WheelSpec& spec);

} // namespace wheel
