#include "ConcentricFit.h"

#include "RadiusHistogram.h"
#include "Robust.h"

#include <algorithm>
#include <numeric>

namespace finder {

namespace {

constexpr double leastSupport = 0.12;   // of the rays, for a circle to count
constexpr double weightOfOthers = 0.05; // of all circles but the leading one

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
