#pragma once

#include "WheelSpec.h"

namespace wheel {

/// Adds what lies on a wheel and is no part of its shape: lettering, dirt, scratches and glare. The valve hole comes
/// later and stays as dark and as sharp as without them.
void paintBlemishes(cv::Mat& image, const WheelSpec& spec);

} // namespace wheel
