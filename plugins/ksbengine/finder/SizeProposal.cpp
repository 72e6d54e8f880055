#include "SizeProposal.h"

#include <algorithm>

namespace finder {

namespace {

struct Size
{
    double median;
    double tolerance; ///< percent
};

/// `limits` are those of the tolerance.
Size sizeFrom(const QVector<HoleExample>& holes, double HoleExample::*member, const Range& limits)
{
    QVector<double> values;
    for (const HoleExample& hole : holes)
        values.append(hole.*member);
    std::sort(values.begin(), values.end());
    const int count = values.size();
    const double median = (values[(count - 1) / 2] + values[count / 2]) / 2;
    const double deviation = std::max(median - values.first(), values.last() - median) / median;
    const double margin = 1 + 3.0 / count;
    // Rounded to thousandths first: 1.5 % shall not become 1.6 % by the last digit of a double.
    const double percent = std::round(1e3 * 100 * margin * deviation) / 1e3;
    return {median, std::clamp(std::ceil(10 * percent) / 10, limits.low, limits.high)};
}

double hundredths(double value)
{
    return std::round(100 * value) / 100;
}

} // namespace

bool proposeSizes(const QVector<HoleExample>& holes, HoleModel* model)
{
    if (holes.size() < fewestForSizes)
        return false;
    const Size rim = sizeFrom(holes, &HoleExample::rimRadius, {5, 50});
    const Size ring = sizeFrom(holes, &HoleExample::ringShare, {1.5, 50});
    const Size hole = sizeFrom(holes, &HoleExample::holeShare, {12, 60});
    model->rimRadius = hundredths(rim.median);
    model->rimTolerance = rim.tolerance;
    model->ringRadius = hundredths(ring.median * rim.median);
    model->ringTolerance = ring.tolerance;
    model->holeRadius = hundredths(hole.median * rim.median);
    model->holeTolerance = hole.tolerance;
    return true;
}

} // namespace finder
