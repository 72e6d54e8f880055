#include "HoleFit.h"

#include "finder/Edges.h"

#include <algorithm>
#include <array>

namespace finder {

namespace {

constexpr double slack = 0.3; // how far an edge may lie from the expected circle, as a share of its radius

/// Rays around a point, each smoothed by its neighbours.
class Fan
{
public:
    static constexpr int rays = 32;

    Fan(const cv::Mat& gray, const cv::Point2d& center, double reach, double step);

    /// Whether all rays lie inside of the image.
    bool whole() const { return m_whole; }
    const std::array<Ray, rays>& all() const { return m_rays; }

private:
    std::array<Ray, rays> m_rays;
    bool m_whole = true;
};

Fan::Fan(const cv::Mat& gray, const cv::Point2d& center, double reach, double step)
{
    std::array<Ray, rays> plain;
    const int count = cvCeil(reach / step) + 1;
    for (int i = 0; i < rays; ++i)
        m_whole = sampleRay(gray, center, 2 * CV_PI * i / rays, 0, step, count, &plain[i]) && m_whole;
    for (int i = 0; m_whole && i < rays; ++i) {
        const Ray& before = plain[(i + rays - 1) % rays];
        const Ray& after = plain[(i + 1) % rays];
        m_rays[i] = plain[i];
        for (size_t k = 0; k < m_rays[i].values.size(); ++k)
            m_rays[i].values[k] = 0.5F * plain[i].values[k] + 0.25F * (before.values[k] + after.values[k]);
    }
}

/// The part of a ray between two radii, and `window` values more on both sides.
Ray part(const Ray& ray, const Range& radius, int window)
{
    const int count = static_cast<int>(ray.values.size());
    const int first = std::clamp(cvFloor(radius.low / ray.step) - window, 0, count);
    const int last = std::clamp(cvCeil(radius.high / ray.step) + window + 1, first, count);
    return {ray.angle, first * ray.step, ray.step, {ray.values.begin() + first, ray.values.begin() + last}};
}

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
