#include "Rays.h"

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

} // namespace finder
