#include "Rays.h"

#include <algorithm>

namespace finder {

namespace {

bool endsInside(const cv::Mat& gray, const cv::Point2d& center, double dx, double dy, double start, double end)
{
    return inside(gray, center.x + dx * start, center.y + dy * start) &&
           inside(gray, center.x + dx * end, center.y + dy * end);
}

void addValues(const cv::Mat& gray, double x, double y, double dx, double dy, std::vector<float>& values)
{
    for (float& value : values) {
        value += grayAt(gray, static_cast<float>(x), static_cast<float>(y));
        x += dx;
        y += dy;
    }
}

double slopeSign(EdgeKind kind, double slope)
{
    switch (kind) {
    case EdgeKind::BrightOutside:
        return slope;
    case EdgeKind::DarkOutside:
        return -slope;
    case EdgeKind::Either:
        break;
    }
    return std::abs(slope);
}

} // namespace

bool sampleRay(const cv::Mat& gray, const cv::Point2d& center, double angle, double start, double step, int count,
               Ray* ray)
{
    return sampleWideRay(gray, center, angle, start, step, count, 0, ray);
}

bool sampleWideRay(const cv::Mat& gray, const cv::Point2d& center, double angle, double start, double step, int count,
                   int side, Ray* ray)
{
    const double dx = std::cos(angle);
    const double dy = std::sin(angle);
    ray->angle = angle;
    ray->start = start;
    ray->step = step;
    ray->values.assign(static_cast<size_t>(count), 0.0F);
    for (int i = -side; i <= side; ++i) {
        const cv::Point2d origin(center.x - dy * i, center.y + dx * i);
        if (!endsInside(gray, origin, dx, dy, start, start + step * (count - 1)))
            return false;
        addValues(gray, origin.x + dx * start, origin.y + dy * start, dx * step, dy * step, ray->values);
    }
    const auto parts = static_cast<float>(2 * side + 1);
    for (float& value : ray->values)
        value /= parts;
    return true;
}

namespace {

constexpr double standsOut = 0.12;   // of the ray's strongest edge
constexpr double weakestSlope = 0.8; // gray levels per pixel

/// Slopes in gray levels per pixel; 0 at both ends, where the window does not fit.
void slopesOf(const Ray& ray, int window, std::vector<double>* slopes)
{
    const int count = static_cast<int>(ray.values.size());
    slopes->assign(static_cast<size_t>(count), 0.0);
    const double scale = 1 / (window * (window + 1) * ray.step);
    for (int i = window; i + window < count; ++i) {
        double difference = 0;
        for (int k = 1; k <= window; ++k)
            difference += ray.values[i + k] - ray.values[i - k];
        (*slopes)[i] = difference * scale;
    }
}

/// Top of the parabola through three values, as an offset from the middle one.
double peakOffset(double before, double at, double after)
{
    const double bend = before - 2 * at + after;
    return bend < 0 ? 0.5 * (before - after) / bend : 0;
}

} // namespace

EdgePoint strongestEdge(const Ray& ray, EdgeKind kind, int window)
{
    thread_local std::vector<double> slopes;
    slopesOf(ray, window, &slopes);
    for (double& slope : slopes)
        slope = slopeSign(kind, slope);
    const auto best = std::max_element(slopes.begin(), slopes.end());
    EdgePoint edge;
    edge.angle = ray.angle;
    if (best == slopes.end() || *best <= 0)
        return edge;
    edge.strength = *best;
    const auto at = static_cast<double>(best - slopes.begin());
    const bool hasNeighbours = at > window && at + window + 1 < static_cast<double>(slopes.size());
    edge.radius = ray.start + (at + (hasNeighbours ? peakOffset(best[-1], *best, best[1]) : 0)) * ray.step;
    return edge;
}

void appendEdges(const Ray& ray, int window, std::vector<EdgePoint>* edges)
{
    thread_local std::vector<double> slopes;
    slopesOf(ray, window, &slopes);
    double strongest = 0;
    for (double& slope : slopes) {
        slope = std::abs(slope);
        strongest = std::max(strongest, slope);
    }
    const double least = std::max(weakestSlope, standsOut * strongest);
    const int count = static_cast<int>(slopes.size());
    for (int i = window + 1; i + window + 1 < count; ++i) {
        if (slopes[i] < least || slopes[i] < slopes[i - 1] || slopes[i] <= slopes[i + 1])
            continue;
        const double at = i + peakOffset(slopes[i - 1], slopes[i], slopes[i + 1]);
        edges->push_back({ray.angle, ray.start + at * ray.step, slopes[i], 0, false});
    }
}

} // namespace finder
