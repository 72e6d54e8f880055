#pragma once

#include "WheelSpec.h"

namespace wheel {

/// Paints background, wheel face and windows, without holes or blemishes: 32-bit float, gray values, not limited.
cv::Mat renderFace(const WheelSpec& spec);

/// About the gray value that renderFace() gives a flat part of the ledge.
double ledgeGray(const WheelSpec& spec);

/// The same of the ledge around the valve hole, where it slopes towards one side of the light.
double holeSurfaceGray(const WheelSpec& spec);

} // namespace wheel
