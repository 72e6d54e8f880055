#pragma once

#include "Random.h"
#include "WheelSpec.h"

namespace wheel {

/// Writes one line of raised or stamped characters along a circle around the hub: a size such as "8X17H2 ET45".
void paintLettering(cv::Mat& image, const WheelSpec& spec, Random& random);

} // namespace wheel
