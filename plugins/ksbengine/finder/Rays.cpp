#include "Rays.h"

#include "Vectorise.h"

#include <algorithm>

#ifdef VC_AVX2
#include <immintrin.h>
#endif

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

/// Places along a line, in fixed point.
struct Line
{
    Line(const cv::Point2d& from, const cv::Point2d& step)
        : x(cvRound(from.x * unit))
        , y(cvRound(from.y * unit))
        , dx(cvRound(step.x * unit))
        , dy(cvRound(step.y * unit))
    {
    }

    int x, y, dx, dy;
};

/// Adds bilinear values from the `first` on, times `unit`: a ray is a few hundred of these, a wheel some hundred rays.
void addValues(const cv::Mat& gray, const Line& line, size_t first, std::vector<float>& values)
{
    const uchar* const data = gray.data;
    const auto stride = static_cast<std::ptrdiff_t>(gray.step[0]);
    int x = line.x + static_cast<int>(first) * line.dx;
    int y = line.y + static_cast<int>(first) * line.dy;
    for (size_t i = first; i < values.size(); ++i, x += line.dx, y += line.dy) {
        const int fx = x & (unit - 1);
        const int fy = y & (unit - 1);
        const uchar* p = data + (y >> fractionBits) * stride + (x >> fractionBits);
        const uchar* q = p + stride;
        const int upper = p[0] * unit + fx * (p[1] - p[0]);
        const int lower = q[0] * unit + fx * (q[1] - q[0]);
        values[i] +=
            static_cast<float>(upper + (((lower - upper) * (fy >> sparedBits)) >> (fractionBits - sparedBits)));
    }
}

#ifdef VC_AVX2

/// Between two pixels, the first two of the four bytes in each lane, by `weights`: of both, times `unit`.
VC_AVX2 inline __m256i between(__m256i bytes, __m256i weights)
{
    const __m256i left = _mm256_and_si256(bytes, _mm256_set1_epi32(0xff));
    const __m256i right = _mm256_slli_epi32(_mm256_and_si256(bytes, _mm256_set1_epi32(0xff00)), 8);
    return _mm256_madd_epi16(_mm256_or_si256(left, right), weights);
}

/// The same for eight values at once; returns how many were added. Four bytes are read of each pixel and its
/// neighbour: the margin of the line keeps them inside of the image.
VC_AVX2 size_t addValuesWide(const cv::Mat& gray, const Line& line, std::vector<float>& values)
{
    const __m256i index = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    const __m256i fraction = _mm256_set1_epi32(unit - 1);
    const __m256i stride = _mm256_set1_epi32(static_cast<int>(gray.step[0]));
    const __m256i dx = _mm256_set1_epi32(8 * line.dx);
    const __m256i dy = _mm256_set1_epi32(8 * line.dy);
    const auto along = [&](int from, int step) VC_AVX2 {
        return _mm256_add_epi32(_mm256_set1_epi32(from), _mm256_mullo_epi32(index, _mm256_set1_epi32(step)));
    };
    __m256i x = along(line.x, line.dx);
    __m256i y = along(line.y, line.dy);
    const auto* const upperRow = reinterpret_cast<const int*>(gray.data);
    const auto* const lowerRow = reinterpret_cast<const int*>(gray.data + gray.step[0]);
    const size_t count = values.size() & ~size_t(7);
    for (size_t i = 0; i < count; i += 8) {
        const __m256i offset = _mm256_add_epi32(_mm256_mullo_epi32(_mm256_srai_epi32(y, fractionBits), stride),
                                                _mm256_srai_epi32(x, fractionBits));
        const __m256i fx = _mm256_and_si256(x, fraction);
        const __m256i fy = _mm256_srli_epi32(_mm256_and_si256(y, fraction), sparedBits);
        const __m256i weights =
            _mm256_or_si256(_mm256_sub_epi32(_mm256_set1_epi32(unit), fx), _mm256_slli_epi32(fx, 16));
        const __m256i upper = between(_mm256_i32gather_epi32(upperRow, offset, 1), weights);
        const __m256i lower = between(_mm256_i32gather_epi32(lowerRow, offset, 1), weights);
        const __m256i down = _mm256_mullo_epi32(_mm256_sub_epi32(lower, upper), fy);
        const __m256i sum = _mm256_add_epi32(upper, _mm256_srai_epi32(down, fractionBits - sparedBits));
        _mm256_storeu_ps(&values[i], _mm256_add_ps(_mm256_loadu_ps(&values[i]), _mm256_cvtepi32_ps(sum)));
        x = _mm256_add_epi32(x, dx);
        y = _mm256_add_epi32(y, dy);
    }
    return count;
}

bool hasWideVectors(const cv::Mat& gray)
{
    static const bool supported = cv::checkHardwareSupport(CV_CPU_AVX2);
    return supported && gray.total() < (size_t(1) << 30); // offsets of 32 bits
}

#endif

void addValues(const cv::Mat& gray, const cv::Point2d& from, const cv::Point2d& step, std::vector<float>& values)
{
    const Line line(from, step);
    size_t done = 0;
#ifdef VC_AVX2
    if (hasWideVectors(gray))
        done = addValuesWide(gray, line, values);
#endif
    addValues(gray, line, done, values);
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
