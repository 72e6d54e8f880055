#pragma once

#include "WheelSpec.h"

namespace wheel {

/// Paints background, wheel face and windows, without holes or blemishes: 32-bit float, gray values, not limited.
cv::Mat renderFace(const WheelSpec& spec);

/// About the gray value that renderFace() gives a flat part of the ledge.
double ledgeGray(const WheelSpec& spec);

} // namespace wheel
