#include "RimFit.h"

#include "Rays.h"

#include <algorithm>

namespace finder {

namespace {

constexpr int rays = 400;
constexpr int slopeWindow = 2;      // pixels
constexpr double bevelShare = 0.02; // of the radius: edges of the rim's bevel lie this near
constexpr double leastOuterSupport = 0.3;

std::vector<EdgePoint> edgesNear(const cv::Mat& gray, const Outline& outline, double reach)
{
    std::vector<EdgePoint> points;
    Ray ray;
    const double margin = reach + bevelShare * outline.radius + slopeWindow;
    const int count = 2 * cvCeil(margin) + 1;
    for (int i = 0; i < rays; ++i) {
        const double angle = 2 * CV_PI * i / rays;
        if (sampleWideRay(gray, outline.center, angle, outline.radiusAt(angle) - margin, 1.0, count, 2, &ray))
            appendEdges(ray, slopeWindow, &points);
    }
    return points;
}

/// Step height divided by slope, for a Gaussian edge: the standard deviation of its blur. The middle of all rays.
double edgeWidth(const cv::Mat& gray, const Outline& outline)
{
    constexpr int half = 24;
    std::vector<double> widths;
    Ray ray;
    for (int i = 0; i < rays; i += 8) {
        const double angle = 2 * CV_PI * i / rays;
        if (!sampleWideRay(gray, outline.center, angle, outline.radiusAt(angle) - half, 1.0, 2 * half + 1, 2, &ray))
            continue;
        const auto extremes = std::minmax_element(ray.values.begin(), ray.values.end());
        const EdgePoint edge = strongestEdge(ray, EdgeKind::Either, slopeWindow);
        if (edge.strength > 0)
            widths.push_back((*extremes.second - *extremes.first) / edge.strength / std::sqrt(2 * CV_PI));
    }
    if (widths.empty())
        return 0;
    const auto middle = widths.begin() + static_cast<std::ptrdiff_t>(widths.size() / 2);
    std::nth_element(widths.begin(), middle, widths.end());
    return *middle;
}

/// The outermost circle that a good part of the rays shows; else the best one.
double outerRadius(const std::vector<ConcentricCircle>& circles)
{
    const ConcentricCircle* best = &circles.front();
    for (const ConcentricCircle& circle : circles) {
        if (circle.support >= leastOuterSupport || circle.support >= best->support)
            best = &circle;
    }
    return best->radius;
}

} // namespace

RimFit fitRim(const cv::Mat& gray, const Outline& guess, double reach)
{
    RimFit rim;
    rim.points = edgesNear(gray, guess, reach);
    const ConcentricFit fit = fitConcentric(guess.center, rim.points, rays, reach);
    if (!fit.valid)
        return rim;
    rim.outline = {fit.center, outerRadius(fit.circles), fit.c2, fit.s2};
    rim.residual = fit.residual;
    rim.coverage = coverage(rim.points, rays / 4);
    rim.edgeWidth = edgeWidth(gray, rim.outline);
    rim.valid = true;
    return rim;
}

} // namespace finder
