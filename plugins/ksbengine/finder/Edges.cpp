#include "Edges.h"

#include "Robust.h"
#include "Vectorise.h"

#include <algorithm>

namespace finder {

namespace {

bool inside(const cv::Mat& gray, double x, double y)
{
    return x >= 0 && y >= 0 && x < gray.cols - 1 && y < gray.rows - 1;
}

bool endsInside(const cv::Mat& gray, const cv::Point2d& center, double dx, double dy, double start, double end)
{
    // A pixel of margin takes up what rounded steps add up to.
    const auto well = [&gray](double x, double y) { return inside(gray, x - 1, y - 1) && inside(gray, x + 1, y + 1); };
    return well(center.x + dx * start, center.y + dy * start) && well(center.x + dx * end, center.y + dy * end);
}

constexpr int fractionBits = 12;
constexpr int unit = 1 << fractionBits;
constexpr int sparedBits = 2; // of the vertical fraction, so that products stay within 32 bits

/// Adds bilinear values along a line, in fixed point: a ray is a few hundred of these, a wheel some hundred rays.
void addValues(const cv::Mat& gray, const cv::Point2d& from, const cv::Point2d& step, std::vector<float>& values)
{
    int x = cvRound(from.x * unit);
    int y = cvRound(from.y * unit);
    const int dx = cvRound(step.x * unit);
    const int dy = cvRound(step.y * unit);
    const uchar* const data = gray.data;
    const auto stride = static_cast<std::ptrdiff_t>(gray.step[0]);
    for (float& value : values) {
        const int fx = x & (unit - 1);
        const int fy = (y & (unit - 1)) >> sparedBits;
        const uchar* p = data + (y >> fractionBits) * stride + (x >> fractionBits);
        const uchar* q = p + stride;
        const int upper = p[0] * unit + fx * (p[1] - p[0]);
        const int lower = q[0] * unit + fx * (q[1] - q[0]);
        value += static_cast<float>(upper + (((lower - upper) * fy) >> (fractionBits - sparedBits)));
        x += dx;
        y += dy;
    }
}

constexpr double standsOut = 0.12;   // of the ray's strongest edge
constexpr double aboveNoise = 3.2;   // times the winsorised magnitude of the slopes along the ray
constexpr double weakestSlope = 0.8; // gray levels per pixel

/// Scratch for the slopes along one ray.
struct Slopes
{
    std::vector<float> plain; // without the surroundings taken off
    std::vector<float> steep; // as the filter wants them
    double typical = 0;       // winsorised magnitude: mostly noise and bending surfaces
};

VC_VECTORISED void differences(const float* values, float scale, int window, int count, float* VC_RESTRICT slopes)
{
    for (int i = window; i < count - window; ++i)
        slopes[i] = 0;
    for (int k = 1; k <= window; ++k) {
        for (int i = window; i < count - window; ++i)
            slopes[i] += values[i + k] - values[i - k];
    }
    for (int i = window; i < count - window; ++i)
        slopes[i] *= scale;
}

/// Slopes in gray levels per pixel; 0 at both ends, where the window does not fit.
void slopesOf(const Ray& ray, int window, std::vector<float>* slopes)
{
    const int count = static_cast<int>(ray.values.size());
    slopes->assign(static_cast<size_t>(count), 0.0F);
    differences(ray.values.data(), static_cast<float>(1 / (window * (window + 1) * ray.step)), window, count,
                slopes->data());
}

VC_VECTORISED void takeOffSurroundings(const float* plain, int apart, int first, int last, float* VC_RESTRICT steep)
{
    for (int i = first; i < last; ++i)
        steep[i] = plain[i] - 0.5F * (plain[i - apart] + plain[i + apart]);
}

/// Beside a step the difference has a ghost of the other sign, where the surface itself does not rise.
VC_VECTORISED void dropGhosts(const float* plain, int count, float* VC_RESTRICT steep)
{
    for (int i = 0; i < count; ++i) {
        const bool rises = (steep[i] * plain[i] > 0) & (std::abs(plain[i]) > 0.5F * std::abs(steep[i]));
        steep[i] = rises ? steep[i] : 0.0F;
    }
}

void signSlopes(EdgeKind kind, std::vector<float>* slopes)
{
    if (kind == EdgeKind::BrightOutside)
        return;
    for (float& slope : *slopes)
        slope = kind == EdgeKind::DarkOutside ? -slope : std::abs(slope);
}

/// Slopes that are positive for the wanted kind of edge. Valid until the thread's next call.
const Slopes& steepness(const Ray& ray, EdgeKind kind, const EdgeFilter& filter)
{
    thread_local Slopes slopes;
    slopesOf(ray, filter.window, &slopes.steep);
    const int count = static_cast<int>(slopes.steep.size());
    if (filter.apart <= 0) {
        slopes.typical = winsorisedMagnitude(slopes.steep.data(), count);
    } else {
        slopes.plain = slopes.steep;
        std::fill(slopes.steep.begin(), slopes.steep.end(), 0.0F);
        const int margin = filter.window + filter.apart;
        takeOffSurroundings(slopes.plain.data(), filter.apart, margin, count - margin, slopes.steep.data());
        slopes.typical = winsorisedMagnitude(slopes.steep.data(), count);
        dropGhosts(slopes.plain.data(), count, slopes.steep.data());
    }
    signSlopes(kind, &slopes.steep);
    return slopes;
}

/// Top of the parabola through three values, as an offset from the one in the middle.
double peakOffset(double before, double at, double after)
{
    const double bend = before - 2 * at + after;
    return bend < 0 ? 0.5 * (before - after) / bend : 0;
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
        const cv::Point2d direction(dx, dy);
        addValues(gray, origin + start * direction, step * direction, ray->values);
    }
    const float scale = 1.0F / static_cast<float>((2 * side + 1) * unit);
    for (float& value : ray->values)
        value *= scale;
    return true;
}

EdgePoint strongestEdge(const Ray& ray, EdgeKind kind, const EdgeFilter& filter)
{
    const std::vector<float>& steep = steepness(ray, kind, filter).steep;
    const auto best = std::max_element(steep.begin(), steep.end());
    EdgePoint edge;
    edge.angle = ray.angle;
    if (best == steep.end() || *best <= 0)
        return edge;
    edge.strength = static_cast<double>(*best);
    const auto at = static_cast<int>(best - steep.begin());
    const bool hasNeighbours = at > filter.window && at + filter.window + 1 < static_cast<int>(steep.size());
    edge.radius = ray.start + (at + (hasNeighbours ? peakOffset(best[-1], *best, best[1]) : 0)) * ray.step;
    return edge;
}

void appendEdges(const Ray& ray, EdgeKind kind, const EdgeFilter& filter, std::vector<EdgePoint>* edges)
{
    if (ray.values.empty())
        return;
    const Slopes& slopes = steepness(ray, kind, filter);
    const std::vector<float>& steep = slopes.steep;
    const auto strongest = static_cast<double>(*std::max_element(steep.begin(), steep.end()));
    const auto least = static_cast<float>(std::max({weakestSlope, standsOut * strongest, aboveNoise * slopes.typical}));
    const int count = static_cast<int>(steep.size());
    for (int i = 1; i + 1 < count; ++i) {
        if (steep[i] < least || steep[i] < steep[i - 1] || steep[i] <= steep[i + 1])
            continue;
        const double at = i + peakOffset(steep[i - 1], steep[i], steep[i + 1]);
        edges->push_back({ray.angle, ray.start + at * ray.step, static_cast<double>(steep[i]), 0, false});
    }
}

} // namespace finder
