#include "RimFit.h"

#include "finder/Edges.h"
#include "finder/Robust.h"

#include <algorithm>

namespace finder {

namespace {

// Lengths in pixels of a picture of about a megapixel.
constexpr int rays = 200;
constexpr double step = 1;
constexpr EdgeFilter coarseFilter{1, 3};
constexpr double bin = 1;           // of the histogram of radii
constexpr double near = 1.5;        // within which an edge belongs to a circle: a blurred edge scatters
constexpr double bevelShare = 0.02; // of the radius: a guess that sits on the inner edge of the bevel is this small
constexpr int fineRays = 240;
constexpr int fineSide = 2; // parallel rays either side, which average noise; the rim hardly bends there
constexpr double fineReach = 1.25;
constexpr double fineStep = 0.5;
constexpr EdgeFilter fineFilter{1, 3};
constexpr double farMove = 0.4;
constexpr double outlierFloor = 0.25;
constexpr double doubtful = 0.3;    // residual beyond which the edges may not be the rim's
constexpr double scattered = 0.8;   // and beyond which they are no circle's; 0.87 by chance
constexpr double lipShare = 0.1;    // of the radius, within which the lip's inner edges lie
constexpr double sameCenter = 0.75; // distance of two fits that agree
constexpr double otherCenter = 1.5; // and of two that do not

struct Search
{
    double reach;  // pixels by which the guess may be off
    double inward; // pixels inside of the guess where edges count as well
};

std::vector<EdgePoint> edgesNear(const cv::Mat& gray, const Outline& outline, const Search& search)
{
    std::vector<EdgePoint> points;
    Ray ray;
    const double filter = step * (coarseFilter.window + coarseFilter.apart);
    const double inward = search.inward + filter;
    const int count = cvCeil((inward + search.reach + bevelShare * outline.radius + filter) / step) + 1;
    for (int i = 0; i < rays; ++i) {
        const double angle = 2 * CV_PI * i / rays;
        if (sampleRay(gray, outline.center, angle, outline.radiusAt(angle) - inward, step, count, &ray))
            appendEdges(ray, EdgeKind::Either, coarseFilter, &points);
    }
    return points;
}

/// The steepest edge on each ray near the outline.
std::vector<EdgePoint> edgesOn(const cv::Mat& gray, const Outline& outline)
{
    std::vector<EdgePoint> points;
    Ray ray;
    const double margin = fineReach + fineStep * (fineFilter.window + fineFilter.apart);
    const int count = 2 * cvRound(margin / fineStep) + 1;
    for (int i = 0; i < fineRays; ++i) {
        const double angle = 2 * CV_PI * i / fineRays;
        if (!sampleWideRay(gray, outline.center, angle, outline.radiusAt(angle) - margin, fineStep, count, fineSide,
                           &ray))
            continue;
        const EdgePoint edge = strongestEdge(ray, EdgeKind::Either, fineFilter);
        if (edge.strength > 0)
            points.push_back(edge);
    }
    return points;
}

/// Step height divided by slope, for a Gaussian edge: the standard deviation of its blur. The median of all rays.
double edgeWidth(const cv::Mat& gray, const Outline& outline)
{
    constexpr int half = 12;
    std::vector<double> widths;
    Ray ray;
    for (int i = 0; i < rays; i += 8) {
        const double angle = 2 * CV_PI * i / rays;
        if (!sampleWideRay(gray, outline.center, angle, outline.radiusAt(angle) - half * step, step, 2 * half + 1, 1,
                           &ray))
            continue;
        const auto extremes = std::minmax_element(ray.values.begin(), ray.values.end());
        const EdgePoint edge = strongestEdge(ray, EdgeKind::Either, {2, 0});
        if (edge.strength > 0)
            widths.push_back((*extremes.second - *extremes.first) / edge.strength / std::sqrt(2 * CV_PI));
    }
    return widths.empty() ? 0 : medianOf(widths);
}

/// Puts the outline onto the steepest edges near by; once more where that moved it so far that some were out of reach.
bool refine(const cv::Mat& gray, RimFit* rim)
{
    for (int round = 0; round < 2; ++round) {
        std::vector<EdgePoint> points = edgesOn(gray, rim->outline);
        const OutlineFit fine = fitOutline(rim->outline.center, points, {true, 0.01, outlierFloor, true});
        if (!fine.valid || fine.used <= fineRays / 3)
            return round > 0;
        const double moved = cv::norm(fine.outline.center - rim->outline.center);
        rim->outline = fine.outline;
        rim->residual = fine.residual;
        rim->points = std::move(points);
        if (moved < farMove)
            break;
    }
    return true;
}

RimFit fitWithin(const cv::Mat& gray, const Outline& guess, const Search& search)
{
    RimFit rim;
    rim.points = edgesNear(gray, guess, search);
    const ConcentricFit fit = fitConcentric(guess.center, rim.points, rays, {search.reach, bin, near});
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
RimFit fitByLip(const cv::Mat& gray, const Outline& guess, double reach, const RimFit& first)
{
    const RimFit rough = fitWithin(gray, guess, {reach, lipShare * guess.radius});
    if (!rough.valid)
        return first;
    RimFit fine = rough;
    const bool agrees = refine(gray, &fine) && nearTo(fine, rough, sameCenter);
    if (!first.valid || !nearTo(first, rough, otherCenter))
        return agrees ? fine : rough;
    return agrees && fine.residual < first.residual ? fine : first;
}

} // namespace

RimFit fitRim(const cv::Mat& gray, const Outline& guess, double reach)
{
    RimFit rim = fitWithin(gray, guess, {reach, 0.7 * reach});
    if (rim.valid)
        refine(gray, &rim);
    if (!rim.valid || rim.residual > doubtful)
        rim = fitByLip(gray, guess, reach, rim);
    // Edges that lie anywhere scatter evenly within the reach of a circle.
    rim.valid = rim.valid && rim.residual < scattered;
    if (rim.valid)
        rim.edgeWidth = edgeWidth(gray, rim.outline);
    return rim;
}

RimFit enlarged(RimFit rim, double factor)
{
    rim.outline = rim.outline.enlarged(factor);
    rim.residual *= factor;
    rim.edgeWidth *= factor;
    for (EdgePoint& point : rim.points) {
        point.radius *= factor;
        point.strength /= factor;
        point.residual *= factor;
    }
    return rim;
}

} // namespace finder
