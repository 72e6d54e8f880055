#pragma once

#include "OutlineFit.h"
#include "Rays.h"

#include <vector>

namespace finder {

enum class EdgeKind { BrightOutside, DarkOutside, Either };

/// How the steepness along a ray is measured, in steps of the ray.
struct EdgeFilter
{
    int window = 2; ///< half width of the two means whose difference is the slope
    int apart = 0;  ///< above 0, the mean of the slopes this far on both sides is taken off: a blurred step stands out,
                    ///< and a surface that only bends away from the light does not
};

/// The strongest edge of a kind on the ray, to a fraction of a step; strength 0 when there is none.
EdgePoint strongestEdge(const Ray& ray, EdgeKind kind, const EdgeFilter& filter);

/// Appends every edge of the ray that stands out from its noise.
void appendEdges(const Ray& ray, EdgeKind kind, const EdgeFilter& filter, std::vector<EdgePoint>* edges);

} // namespace finder
