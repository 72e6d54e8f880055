#include "HoleFit.h"

#include "Edges.h"
#include "Fan.h"

#include <algorithm>

namespace finder {

namespace {

constexpr double slack = 0.3; // how far an edge may lie from the expected circle, as a share of its radius

HoleFit fitEdges(const Fan& fan, const Outline& expected, EdgeKind kind)
{
    HoleFit hole;
    for (const Ray& ray : fan.all()) {
        const double radius = expected.radiusAt(ray.angle);
        const Range window{radius * (1 - slack) - 1, radius * (1 + slack) + 1};
        const EdgePoint edge = strongestEdge(part(ray, window, 2), kind, {2, 0});
        if (edge.strength > 0)
            hole.points.push_back(edge);
    }
    hole.fit = fitOutline(expected.center, hole.points, {true, slack / 2, 0.5});
    return hole;
}

double strengthOf(const HoleFit& hole)
{
    double sum = 0;
    for (const EdgePoint& point : hole.points)
        sum += point.used ? point.strength : 0;
    return hole.fit.valid ? sum : 0;
}

} // namespace

HoleFit measureOutline(const cv::Mat& gray, const cv::Point2d& near, double radius)
{
    const double reach = 1.65 * radius + 3;
    Outline outline{near, radius, 0, 0};
    HoleFit best;
    for (int pass = 0; pass < 2; ++pass) {
        const Fan fan(gray, outline.center, reach, std::max(radius / 14, 0.4));
        if (!fan.whole())
            return best;
        HoleFit dark = fitEdges(fan, outline, EdgeKind::BrightOutside);
        HoleFit bright = fitEdges(fan, outline, EdgeKind::DarkOutside);
        best = strengthOf(dark) >= strengthOf(bright) ? std::move(dark) : std::move(bright);
        if (!best.fit.valid || cv::norm(best.fit.outline.center - near) > radius)
            return {};
        outline = best.fit.outline;
    }
    return best;
}

} // namespace finder
