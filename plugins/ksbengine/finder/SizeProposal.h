#pragma once

#include "HoleExamples.h"
#include "HoleModel.h"

namespace finder {

constexpr int fewestForSizes = 3; ///< examples that sizes are proposed from

/// Sizes and tolerances as n confirmed holes suggest them. With R the median of the rim's radii, the ring is R times
/// the median of the examples' shares of the rim, the hole likewise. Each tolerance is (1 + 3 / n) times the largest
/// deviation from the median, in percent and rounded up to tenths: few examples have not seen the whole spread, so that
/// three are given twice of what they show and twenty a sixth more. It is at least 5 % of the rim, 1.5 % of the ring
/// and 12 % of the hole, since parts that were photographed on one day differ less than those of a year, and at most
/// what applyParameters() takes. False, and `model` as it was, with fewer than fewestForSizes examples.
bool proposeSizes(const QVector<HoleExample>& holes, HoleModel* model);

} // namespace finder
