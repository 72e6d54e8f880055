#pragma once

#include "Fan.h"
#include "HoleFit.h"

namespace finder {

/// Scores a measured hole from the rays around it; see HoleScore. `radius` is the range that the model allows.
HoleScore judge(const HoleFit& hole, const Fan& fan, const Range& radius, const ImageLevels& levels);

} // namespace finder
