#pragma once

#include "ConcentricFit.h"

#include <vector>

namespace finder {

/// The direction of an edge point from the centre.
struct Place
{
    double c, s, c2, s2; // cos and sin of the direction and of twice the direction
};

std::vector<Place> placesOf(const std::vector<EdgePoint>& points);

/// How the edges' radii pile up when seen from a moved centre.
class RadiusPile
{
public:
    /// The centre moves by `reach` at most.
    RadiusPile(const std::vector<EdgePoint>& points, const std::vector<Place>& places, double reach);

    /// Sorts the radii as seen from (a, b) into piles of width `bin`.
    void fill(double a, double b, double bin);

    double concentration() const;

    /// Radii of the piles of at least `least` points, highest first, none nearer than `apart` to a higher one.
    std::vector<double> peaks(double least, double apart) const;

private:
    std::vector<float> m_radii; // of the points, less m_low
    std::vector<float> m_cosines;
    std::vector<float> m_sines;
    std::vector<int> m_piles;   // scratch: the pile of each point
    std::vector<float> m_parts; // and how much of it belongs to the next pile
    std::vector<float> m_counts;
    double m_low = 0;
    double m_width = 0;
    double m_bin = 1;
};

/// The move of the centre that piles the radii up highest: a grid, then finer ones around its best places.
cv::Point2d bestMove(RadiusPile& pile, double reach, double finestBin);

} // namespace finder
