#include "ConcentricFit.h"

#include "finder/Robust.h"
#include "finder/Vectorise.h"

#include <algorithm>
#include <numeric>

namespace finder {

namespace {

constexpr size_t mostCircles = 5;
constexpr size_t startsTried = 3;
constexpr double leastSupport = 0.12;   // of the rays, for a circle to count
constexpr double weightOfOthers = 0.05; // of all circles but the leading one

/// The lower bin of each point and the share of it that belongs to the next one; the first and the last bin take what
/// lies beyond.
VC_VECTORISED void project(const float* radii, const float* cosines, const float* sines, float x, float y, float scale,
                           float last, int count, int* VC_RESTRICT bins, float* VC_RESTRICT shares)
{
    for (int i = 0; i < count; ++i) {
        const float at = std::min(std::max(radii[i] * scale - x * cosines[i] - y * sines[i], 0.0F), last);
        bins[i] = static_cast<int>(at);
        shares[i] = at - static_cast<float>(bins[i]);
    }
}

/// The histogram of the edges' radii as seen from a shifted centre: around the true centre each concentric circle is a
/// sharp peak. A radius is shared out between the two nearest bins.
class RadiusHistogram
{
public:
    /// The centre shifts by `reach` at most.
    RadiusHistogram(const std::vector<EdgePoint>& points, const std::vector<Harmonics>& harmonics, double reach);

    /// Counts the radii as seen from (x, y) in bins of this width.
    void fill(double x, double y, double bin);

    /// Sum of the cubed counts: the higher, the sharper the peaks.
    double concentration() const;

    /// Radii of the peaks of at least `least` points, highest first, none nearer than `apart` to a higher one.
    std::vector<double> peaks(double least, double apart) const;

private:
    std::vector<float> m_radii; // of the points, less m_low
    std::vector<float> m_cosines;
    std::vector<float> m_sines;
    std::vector<int> m_bins;     // scratch: the lower bin of each point
    std::vector<float> m_shares; // and how much of it belongs to the upper one
    std::vector<float> m_counts;
    double m_low = 0;
    double m_width = 0;
    double m_bin = 1;
};

RadiusHistogram::RadiusHistogram(const std::vector<EdgePoint>& points, const std::vector<Harmonics>& harmonics,
                                 double reach)
    : m_bins(points.size())
    , m_shares(points.size())
{
    const auto ends = std::minmax_element(points.begin(), points.end(),
                                          [](const EdgePoint& a, const EdgePoint& b) { return a.radius < b.radius; });
    m_low = ends.first->radius - 1.5 * reach - 2;
    m_width = ends.second->radius + 1.5 * reach + 2 - m_low;
    for (size_t i = 0; i < points.size(); ++i) {
        m_radii.push_back(static_cast<float>(points[i].radius - m_low));
        m_cosines.push_back(static_cast<float>(harmonics[i].c));
        m_sines.push_back(static_cast<float>(harmonics[i].s));
    }
}

void RadiusHistogram::fill(double x, double y, double bin)
{
    m_bin = bin;
    m_counts.assign(static_cast<size_t>(m_width / bin) + 3, 0.0F);
    const auto scale = static_cast<float>(1 / bin);
    project(m_radii.data(), m_cosines.data(), m_sines.data(), static_cast<float>(x) * scale,
            static_cast<float>(y) * scale, scale, static_cast<float>(m_counts.size() - 2),
            static_cast<int>(m_bins.size()), m_bins.data(), m_shares.data());
    for (size_t i = 0; i < m_bins.size(); ++i) {
        float* const count = &m_counts[static_cast<size_t>(m_bins[i])];
        count[0] += 1 - m_shares[i];
        count[1] += m_shares[i];
    }
}

double RadiusHistogram::concentration() const
{
    float sum = 0;
    for (const float count : m_counts)
        sum += count * count * count;
    return sum;
}

std::vector<double> RadiusHistogram::peaks(double least, double apart) const
{
    std::vector<std::pair<double, double>> found;
    for (size_t k = 1; k + 1 < m_counts.size(); ++k) {
        const double around = m_counts[k - 1] + m_counts[k] + m_counts[k + 1];
        if (m_counts[k] >= m_counts[k - 1] && m_counts[k] > m_counts[k + 1] && around >= least)
            found.emplace_back(around,
                               m_low + (static_cast<double>(k) + (m_counts[k + 1] - m_counts[k - 1]) / around) * m_bin);
    }
    std::sort(found.rbegin(), found.rend());
    std::vector<double> radii;
    for (const auto& peak : found) {
        const bool close =
            std::any_of(radii.begin(), radii.end(), [&](double r) { return std::abs(r - peak.second) < apart; });
        if (!close && radii.size() < mostCircles)
            radii.push_back(peak.second);
    }
    return radii;
}

struct Shift
{
    cv::Point2d by;
    double concentration = 0;
};

void searchAround(RadiusHistogram& histogram, const cv::Point2d& from, double span, double step, double bin,
                  std::vector<Shift>* shifts)
{
    for (double a = -span; a <= span + 1e-9; a += step) {
        for (double b = -span; b <= span + 1e-9; b += step) {
            const cv::Point2d by = from + cv::Point2d(a, b);
            histogram.fill(by.x, by.y, bin);
            shifts->push_back({by, histogram.concentration()});
        }
    }
    std::sort(shifts->begin(), shifts->end(),
              [](const Shift& a, const Shift& b) { return a.concentration > b.concentration; });
}

/// The best shifts of a list sorted by concentration, no two within `apart` pixels.
std::vector<Shift> distinct(const std::vector<Shift>& sorted, double apart, size_t most)
{
    std::vector<Shift> kept;
    for (const Shift& shift : sorted) {
        const bool near = std::any_of(kept.begin(), kept.end(),
                                      [&](const Shift& other) { return cv::norm(other.by - shift.by) < apart; });
        if (!near && kept.size() < most)
            kept.push_back(shift);
    }
    return kept;
}

/// The shift of the centre with the greatest concentration: a grid, then finer ones around its best places.
cv::Point2d sharpestShift(RadiusHistogram& histogram, double reach, double finestBin)
{
    std::vector<Shift> coarse;
    const double step = std::max(1.0, finestBin);
    searchAround(histogram, {}, reach, 2 * step, 2 * finestBin, &coarse);
    Shift best;
    for (const Shift& start : distinct(coarse, 4 * step, startsTried)) {
        std::vector<Shift> fine;
        searchAround(histogram, start.by, step, step, finestBin, &fine);
        const cv::Point2d from = fine.front().by;
        fine.clear();
        searchAround(histogram, from, step / 2, step / 2, finestBin, &fine);
        if (fine.front().concentration > best.concentration)
            best = fine.front();
    }
    return best.by;
}

/// Common shape and one radius for each circle, by least squares on the points near a circle.
class JointFit
{
public:
    JointFit(std::vector<EdgePoint>& points, const std::vector<Harmonics>& harmonics, const cv::Point2d& shift,
             std::vector<double> radii);

    bool run(const ConcentricOptions& options);
    ConcentricFit result(const cv::Point2d& center, int rays);

private:
    double residual(size_t i, size_t circle) const
    {
        return m_points[i].radius - m_shape.at(m_harmonics[i]) - m_radii[circle];
    }

    size_t nearest(size_t i) const;
    bool step();
    std::vector<int> markUsed(double* squares);

    std::vector<EdgePoint>& m_points;
    const std::vector<Harmonics>& m_harmonics;
    std::vector<double> m_radii;
    std::vector<double> m_sharpness; // weight of each point: a steep edge is placed better
    CommonShape m_shape;
    double m_near = 1;
    double m_tilt = 0.01;
};

JointFit::JointFit(std::vector<EdgePoint>& points, const std::vector<Harmonics>& harmonics, const cv::Point2d& shift,
                   std::vector<double> radii)
    : m_points(points)
    , m_harmonics(harmonics)
    , m_radii(std::move(radii))
    , m_shape{shift.x, shift.y, 0, 0}
{
    std::vector<double> strengths;
    strengths.reserve(points.size());
    for (const EdgePoint& point : points)
        strengths.push_back(point.strength);
    const double full = 1.5 * median(strengths);
    m_sharpness.reserve(points.size());
    for (const double strength : strengths) {
        const double relative = std::min(1.0, strength / full);
        m_sharpness.push_back(relative * relative);
    }
}

bool JointFit::run(const ConcentricOptions& options)
{
    m_tilt = options.tilt;
    for (const double wider : {3.0, 2.0, 1.5, 1.2, 1.0, 1.0}) {
        m_near = wider * options.near;
        if (!step())
            return false;
    }
    return true;
}

/// One round of reweighted least squares.
bool JointFit::step()
{
    HarmonicEquations equations(m_radii.size());
    double total = 0;
    for (size_t i = 0; i < m_points.size(); ++i) {
        const size_t k = nearest(i);
        const double weight = tukeyWeight(residual(i, k) / m_near) * (k == 0 ? 1 : weightOfOthers) * m_sharpness[i];
        if (weight <= 0)
            continue;
        equations.add(m_harmonics[i], k, m_points[i].radius, weight);
        total += weight;
    }
    equations.addTiltPrior(m_tilt * m_radii.front());
    const bool enough = total >= 2.0 * static_cast<double>(4 + m_radii.size());
    return enough && equations.solve(&m_shape, m_radii.data());
}

size_t JointFit::nearest(size_t i) const
{
    const double r = m_points[i].radius - m_shape.at(m_harmonics[i]);
    size_t best = 0;
    for (size_t k = 1; k < m_radii.size(); ++k) {
        if (std::abs(r - m_radii[k]) < std::abs(r - m_radii[best]))
            best = k;
    }
    return best;
}

ConcentricFit JointFit::result(const cv::Point2d& center, int rays)
{
    ConcentricFit fit{center + cv::Point2d(m_shape.x, m_shape.y), m_shape.c2, m_shape.s2, {}, m_radii[0], 0, true};
    double squares = 0;
    const std::vector<int> counts = markUsed(&squares);
    for (size_t k = 0; k < m_radii.size(); ++k)
        fit.circles.push_back({m_radii[k], static_cast<double>(counts[k]) / rays});
    std::sort(fit.circles.begin(), fit.circles.end(),
              [](const ConcentricCircle& a, const ConcentricCircle& b) { return a.radius < b.radius; });
    const int used = std::accumulate(counts.begin(), counts.end(), 0);
    fit.residual = used > 0 ? std::sqrt(squares / used) : 0;
    return fit;
}

/// The number of used points of each circle, and the sum of their squared residuals.
std::vector<int> JointFit::markUsed(double* squares)
{
    std::vector<int> counts(m_radii.size(), 0);
    for (size_t i = 0; i < m_points.size(); ++i) {
        EdgePoint& point = m_points[i];
        const size_t k = nearest(i);
        point.residual = residual(i, k);
        point.used = std::abs(point.residual) < m_near;
        if (point.used) {
            ++counts[k];
            *squares += point.residual * point.residual;
        }
    }
    return counts;
}

double strengthNear(const std::vector<EdgePoint>& points, const std::vector<Harmonics>& harmonics,
                    const cv::Point2d& shift, double radius, double near)
{
    double sum = 0;
    for (size_t i = 0; i < points.size(); ++i) {
        if (std::abs(points[i].radius - shift.x * harmonics[i].c - shift.y * harmonics[i].s - radius) < 1.5 * near)
            sum += points[i].strength;
    }
    return sum;
}

/// The outermost good circle.
size_t leadOf(const std::vector<double>& radii, const std::vector<double>& strengths)
{
    constexpr double good = 0.4; // of the strongest circle
    const double best = *std::max_element(strengths.begin(), strengths.end());
    size_t lead = 0;
    for (size_t k = 0; k < radii.size(); ++k) {
        if (strengths[k] >= good * best && (strengths[lead] < good * best || radii[k] > radii[lead]))
            lead = k;
    }
    return lead;
}

} // namespace

ConcentricFit fitConcentric(const cv::Point2d& center, std::vector<EdgePoint>& points, int rays,
                            const ConcentricOptions& options)
{
    if (points.size() < 20)
        return {};
    const std::vector<Harmonics> harmonics = harmonicsOf(points);
    RadiusHistogram histogram(points, harmonics, options.reach);
    const cv::Point2d shift = sharpestShift(histogram, options.reach, options.bin);
    histogram.fill(shift.x, shift.y, options.bin);
    std::vector<double> radii = histogram.peaks(leastSupport * rays, 3 * options.bin);
    if (radii.empty())
        return {};
    std::vector<double> strengths;
    strengths.reserve(radii.size());
    for (const double radius : radii)
        strengths.push_back(strengthNear(points, harmonics, shift, radius, options.bin));
    std::swap(radii[0], radii[leadOf(radii, strengths)]);
    JointFit joint(points, harmonics, shift, radii);
    return joint.run(options) ? joint.result(center, rays) : ConcentricFit();
}

} // namespace finder
