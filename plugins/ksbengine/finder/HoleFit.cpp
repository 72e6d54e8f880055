#include "HoleFit.h"

#include "Rays.h"

#include <algorithm>

namespace finder {

namespace {

constexpr int rays = 48;
constexpr double step = 0.5; // pixels
constexpr int passes = 3;
constexpr double axisSlack = 0.3; // a tilted hole's short axis is shorter than its radius by up to this share

struct Search
{
    cv::Point2d center;
    Range radius; // where edges are looked for
};

std::vector<Ray> castRays(const cv::Mat& gray, const cv::Point2d& center, double reach)
{
    std::vector<Ray> all;
    all.reserve(rays);
    const int count = cvCeil(reach / step) + 1;
    for (int i = 0; i < rays; ++i) {
        Ray ray;
        if (sampleRay(gray, center, 2 * CV_PI * i / rays, 0, step, count, &ray))
            all.push_back(std::move(ray));
    }
    return all;
}

Ray part(const Ray& ray, const Range& radius, int window)
{
    const int count = static_cast<int>(ray.values.size());
    const int first = std::clamp(cvFloor(radius.low / step) - window, 0, count);
    const int last = std::clamp(cvCeil(radius.high / step) + window + 1, first, count);
    return {ray.angle, first * step, step, {ray.values.begin() + first, ray.values.begin() + last}};
}

double meanOf(const Ray& ray, double from, double to)
{
    const int count = static_cast<int>(ray.values.size());
    const int first = std::clamp(cvRound(from / step), 0, count - 1);
    const int last = std::clamp(cvRound(to / step), first, count - 1);
    double sum = 0;
    for (int i = first; i <= last; ++i)
        sum += ray.values[i];
    return sum / (last - first + 1);
}

double middleOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// 0 below `low`, 1 above `high`, straight between.
double ramp(double value, double low, double high)
{
    return std::clamp((value - low) / (high - low), 0.0, 1.0);
}

HoleScore judge(const HoleFit& hole, const std::vector<Ray>& all, const Range& radius, double black)
{
    const Outline& outline = hole.fit.outline;
    std::vector<double> outer;
    std::vector<double> inner;
    for (const Ray& ray : all) {
        const double edge = outline.radiusAt(ray.angle);
        outer.push_back(meanOf(ray, 1.25 * edge, 1.5 * edge));
        inner.push_back(meanOf(ray, 0.65 * edge, 0.85 * edge));
    }
    const double outside = middleOf(outer);
    const double inside = middleOf(inner);
    double typical = 0;
    for (const EdgePoint& point : hole.points)
        typical = std::max(typical, point.strength);
    const auto good = std::count_if(hole.points.begin(), hole.points.end(), [typical](const EdgePoint& point) {
        return point.used && point.strength > 0.15 * typical;
    });
    HoleScore score;
    score.evidence = ramp(static_cast<double>(good) / rays, 0.4, 0.9);
    score.roundness = 1 - ramp(hole.fit.residual / outline.radius, 0.03, 0.2);
    score.darkness = ramp((outside - inside) / std::max(10.0, outside - black), 0.2, 0.75);
    const double off = std::max(radius.low - outline.radius, outline.radius - radius.high);
    score.size = 1 - ramp(off / outline.radius, 0.0, 0.3);
    return score;
}

} // namespace

HoleFit measureHole(const cv::Mat& gray, const cv::Point2d& near, const Range& radius, double black)
{
    HoleFit hole;
    const double reach = 1.8 * radius.high + 3;
    Search search{near, {radius.low * 0.5, radius.high * 1.35}};
    std::vector<Ray> all;
    for (int pass = 0; pass < passes; ++pass) {
        all = castRays(gray, search.center, reach);
        const int window = std::max(1, cvRound(0.1 * search.radius.middle() / step));
        hole.points.clear();
        for (const Ray& ray : all) {
            const EdgePoint edge = strongestEdge(part(ray, search.radius, window), EdgeKind::BrightOutside, window);
            if (edge.strength > 0)
                hole.points.push_back(edge);
        }
        hole.fit = fitOutline(search.center, hole.points, {pass > 0, axisSlack / 2, 0.5});
        if (!hole.fit.valid || cv::norm(hole.fit.outline.center - near) > radius.high)
            return {};
        const double found = hole.fit.outline.radius;
        search = {hole.fit.outline.center, {found * (1 - axisSlack) - 1, found * (1 + axisSlack) + 1}};
    }
    hole.score = judge(hole, all, radius, black);
    return hole;
}

} // namespace finder
