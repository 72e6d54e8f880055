#include "RimFit.h"

#include "Edges.h"
#include "Robust.h"

#include <algorithm>

namespace finder {

namespace {

constexpr int rays = 200;
constexpr EdgeFilter coarseFilter{2, 5};
constexpr EdgeFilter fineFilter{4, 10};
constexpr double bevelShare = 0.02; // of the radius: a guess that sits on the inner edge of the bevel is this small
constexpr int fineRays = 240;
constexpr int fineSide =
    4; // parallel rays either side, which averages noise; the rim bends by less than 0.02 pixels there
constexpr double fineReach = 2.5; // pixels either side
constexpr double fineStep = 0.5;
constexpr double doubtful = 0.8; // pixels of residual beyond which the edges may not be the rim's
constexpr double lipShare = 0.1; // of the radius, within which the lip's inner edges lie

struct Search
{
    double reach;  // pixels by which the guess may be off
    double inward; // pixels inside of the guess where edges count as well
    double unit;
};

std::vector<EdgePoint> edgesNear(const cv::Mat& gray, const Outline& outline, const Search& search)
{
    std::vector<EdgePoint> points;
    Ray ray;
    const double unit = search.unit;
    const double filter = unit * (coarseFilter.window + coarseFilter.apart);
    const double inward = search.inward + filter;
    const int count = cvCeil((inward + search.reach + bevelShare * outline.radius + filter) / unit) + 1;
    for (int i = 0; i < rays; ++i) {
        const double angle = 2 * CV_PI * i / rays;
        if (sampleWideRay(gray, outline.center, angle, outline.radiusAt(angle) - inward, unit, count, 1, &ray))
            appendEdges(ray, EdgeKind::Either, coarseFilter, &points);
    }
    return points;
}

/// The steepest edge on each ray near the outline.
std::vector<EdgePoint> edgesOn(const cv::Mat& gray, const Outline& outline, double unit)
{
    std::vector<EdgePoint> points;
    Ray ray;
    const double step = fineStep * unit;
    const double margin = fineReach * unit + step * (fineFilter.window + fineFilter.apart);
    const int count = 2 * cvRound(margin / step) + 1;
    for (int i = 0; i < fineRays; ++i) {
        const double angle = 2 * CV_PI * i / fineRays;
        if (!sampleWideRay(gray, outline.center, angle, outline.radiusAt(angle) - margin, step, count, fineSide, &ray))
            continue;
        const EdgePoint edge = strongestEdge(ray, EdgeKind::Either, fineFilter);
        if (edge.strength > 0)
            points.push_back(edge);
    }
    return points;
}

/// Step height divided by slope, for a Gaussian edge: the standard deviation of its blur. The median of all rays.
double edgeWidth(const cv::Mat& gray, const Outline& outline, double unit)
{
    constexpr int half = 24;
    std::vector<double> widths;
    Ray ray;
    for (int i = 0; i < rays; i += 8) {
        const double angle = 2 * CV_PI * i / rays;
        if (!sampleWideRay(gray, outline.center, angle, outline.radiusAt(angle) - half * unit, unit, 2 * half + 1, 1,
                           &ray))
            continue;
        const auto extremes = std::minmax_element(ray.values.begin(), ray.values.end());
        const EdgePoint edge = strongestEdge(ray, EdgeKind::Either, {2, 0});
        if (edge.strength > 0)
            widths.push_back((*extremes.second - *extremes.first) / edge.strength / std::sqrt(2 * CV_PI));
    }
    return widths.empty() ? 0 : medianOf(widths);
}

/// Puts the outline onto the steepest edges near by.
bool refine(const cv::Mat& gray, double unit, RimFit* rim)
{
    std::vector<EdgePoint> points = edgesOn(gray, rim->outline, unit);
    const OutlineFit fine = fitOutline(rim->outline.center, points, {true, 0.01, 0.5 * unit, true});
    if (!fine.valid || fine.used <= fineRays / 3)
        return false;
    rim->outline = fine.outline;
    rim->residual = fine.residual;
    rim->points = std::move(points);
    return true;
}

RimFit fitWithin(const cv::Mat& gray, const Outline& guess, const Search& search)
{
    RimFit rim;
    rim.points = edgesNear(gray, guess, search);
    const ConcentricFit fit = fitConcentric(guess.center, rim.points, rays, {search.reach, search.unit, search.unit});
    if (!fit.valid)
        return rim;
    rim.outline = {fit.center, fit.lead, fit.c2, fit.s2};
    rim.residual = fit.residual;
    rim.coverage = coverage(rim.points, rays / 4);
    rim.valid = true;
    return rim;
}

bool nearTo(const RimFit& one, const RimFit& other, double distance)
{
    return cv::norm(one.outline.center - other.outline.center) < distance;
}

/// Where the outer edge is as bright as what lies behind the wheel, the edges of the lip inside of it still give the
/// centre.
RimFit fitByLip(const cv::Mat& gray, const Outline& guess, double reach, double unit, const RimFit& first)
{
    const RimFit rough = fitWithin(gray, guess, {reach, lipShare * guess.radius, unit});
    if (!rough.valid)
        return first;
    RimFit fine = rough;
    const bool agrees = refine(gray, unit, &fine) && nearTo(fine, rough, 1.5 * unit);
    if (!first.valid || !nearTo(first, rough, 3 * unit))
        return agrees ? fine : rough;
    return agrees && fine.residual < first.residual ? fine : first;
}

} // namespace

RimFit fitRim(const cv::Mat& gray, const Outline& guess, double reach, double unit)
{
    RimFit rim = fitWithin(gray, guess, {reach, 0.7 * reach, unit});
    if (rim.valid)
        refine(gray, unit, &rim);
    if (!rim.valid || rim.residual > doubtful * unit)
        rim = fitByLip(gray, guess, reach, unit, rim);
    if (rim.valid)
        rim.edgeWidth = edgeWidth(gray, rim.outline, unit);
    return rim;
}

} // namespace finder
