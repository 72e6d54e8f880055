#include "Rays.h"

#include <algorithm>

namespace finder {

namespace {

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
        const cv::Point2d direction(dx, dy);
        addValues(gray, origin + start * direction, step * direction, ray->values);
    }
    const float scale = 1.0F / static_cast<float>((2 * side + 1) * unit);
    for (float& value : ray->values)
        value *= scale;
    return true;
}

namespace {

constexpr double standsOut = 0.12;   // of the ray's strongest edge
constexpr double aboveNoise = 4.0;   // times what is usual along the ray
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

/// What most of the values are like in magnitude: their mean without what stands out from it.
double usualMagnitude(const std::vector<double>& values)
{
    double sum = 0;
    for (const double value : values)
        sum += std::abs(value);
    const auto count = static_cast<double>(std::max<size_t>(1, values.size()));
    for (int pass = 0; pass < 2; ++pass) {
        const double most = 1.5 * sum / count;
        sum = 0;
        for (const double value : values)
            sum += std::min(std::abs(value), most);
    }
    return 0.8 * sum / count;
}

/// Returns what is usual along the ray: mostly noise and bending surfaces.
double steepness(const Ray& ray, const EdgeFilter& filter, std::vector<double>* slopes)
{
    slopesOf(ray, filter.window, slopes);
    if (filter.apart <= 0)
        return usualMagnitude(*slopes);
    thread_local std::vector<double> plain;
    plain = *slopes;
    const int count = static_cast<int>(plain.size());
    for (int i = 0; i < count; ++i) {
        const bool fits = i >= filter.window + filter.apart && i + filter.window + filter.apart < count;
        (*slopes)[i] = fits ? plain[i] - 0.5 * (plain[i - filter.apart] + plain[i + filter.apart]) : 0;
    }
    const double usual = usualMagnitude(*slopes);
    for (int i = 0; i < count; ++i) {
        const double sharp = (*slopes)[i];
        // Beside a step the difference has a ghost of the other sign, where the surface itself does not rise.
        (*slopes)[i] = sharp * plain[i] > 0 && std::abs(plain[i]) > 0.5 * std::abs(sharp) ? sharp : 0;
    }
    return usual;
}

} // namespace

EdgePoint strongestEdge(const Ray& ray, EdgeKind kind, const EdgeFilter& filter)
{
    const int window = filter.window;
    thread_local std::vector<double> slopes;
    steepness(ray, filter, &slopes);
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

void appendEdges(const Ray& ray, EdgeKind kind, const EdgeFilter& filter, std::vector<EdgePoint>* edges)
{
    if (ray.values.empty())
        return;
    thread_local std::vector<double> slopes;
    const double usual = steepness(ray, filter, &slopes);
    for (double& slope : slopes)
        slope = slopeSign(kind, slope);
    const double strongest = *std::max_element(slopes.begin(), slopes.end());
    const double least = std::max({weakestSlope, standsOut * strongest, aboveNoise * usual});
    const int count = static_cast<int>(slopes.size());
    for (int i = 1; i + 1 < count; ++i) {
        if (slopes[i] < least || slopes[i] < slopes[i - 1] || slopes[i] <= slopes[i + 1])
            continue;
        const double at = i + peakOffset(slopes[i - 1], slopes[i], slopes[i + 1]);
        edges->push_back({ray.angle, ray.start + at * ray.step, slopes[i], 0, false});
    }
}

} // namespace finder
