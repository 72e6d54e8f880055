#pragma once

#include "Network.h"
#include "Views.h"

#include <vector>

namespace finder {

/// A place that may be a hole, at a first look.
struct HoleCandidate
{
    cv::Point2d point;   ///< image pixels, right to about a fifth of the hole's radius
    double radius = 0;   ///< of the mouth, pixels, right to about a fifth
    double evidence = 0; ///< logarithm of the odds that it is a hole
};

/// Looks over a whole unwrapped ring for what may be a hole, with a network that has learnt from holes of every
/// brightness: dark, bright, gray in gray. One instance per thread.
class HoleCandidates
{
public:
    /// How large a hole is in the map that it is looked for in, places.
    static constexpr double mapRadius = 4.5;
    /// How far a map should reach beyond the ring, radii of the hole.
    static constexpr double margin = 2.6;

    /// Appends the best places of `ring`, a map with a step of radius / mapRadius, whose distance from the hub lies
    /// within `radii`: at most `most`, best first, and none nearer than about a radius to a better one.
    void find(const RingMap& ring, const Range& radii, double radius, int most, std::vector<HoleCandidate>* found);

private:
    cv::Mat look(const cv::Mat& map);

    Network m_network{QStringLiteral("glance")};
    cv::Mat m_input;
};

/// Of all candidates, best first, those that are no second look at a better one's place; at most `most`.
std::vector<HoleCandidate> distinct(std::vector<HoleCandidate> candidates, int most);

} // namespace finder
