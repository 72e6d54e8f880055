#pragma once

#include "HarmonicEquations.h"
#include "OutlineFit.h"

#include <vector>

namespace finder {

/// The histogram of the edges' radii as seen from a shifted centre: around the true centre each concentric circle is a
/// sharp peak. A radius is shared out between the two nearest bins.
class RadiusHistogram
{
public:
    /// The centre shifts by `reach` at most.
    RadiusHistogram(const std::vector<EdgePoint>& points, const std::vector<Harmonics>& harmonics, double reach);

    /// Counts the radii as seen from (x, y) in bins of this width.
    void fill(double x, double y, double bin);

    /// Sum of the cubed counts: the higher, the sharper the peaks.
    double concentration() const;

    /// Radii of the peaks of at least `least` points, highest first, none nearer than `apart` to a higher one.
    std::vector<double> peaks(double least, double apart) const;

private:
    std::vector<float> m_radii; // of the points, less m_low
    std::vector<float> m_cosines;
    std::vector<float> m_sines;
    std::vector<int> m_bins;     // scratch: the lower bin of each point
    std::vector<float> m_shares; // and how much of it belongs to the upper one
    std::vector<float> m_counts;
    double m_low = 0;
    double m_width = 0;
    double m_bin = 1;
};

/// The shift of the centre with the greatest concentration: a grid, then finer ones around its best places.
cv::Point2d sharpestShift(RadiusHistogram& histogram, double reach, double finestBin);

} // namespace finder
