#pragma once

#include "WheelSpec.h"

namespace wheel {

/// Paints background, wheel face and windows, without holes or blemishes: 32-bit float, gray values, not limited.
cv::Mat renderFace(const WheelSpec& spec);

} // namespace wheel
