#pragma once

#include "WheelSpec.h"

namespace wheel {

/// Light, lens, motion and sensor, in this order: turns the painted scene (32-bit float) into the camera's 8-bit image.
cv::Mat photograph(cv::Mat scene, const WheelSpec& spec);

} // namespace wheel
