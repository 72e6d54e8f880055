#include "OutlineFit.h"

#include "HarmonicEquations.h"
#include "Robust.h"

#include <algorithm>

namespace finder {

namespace {

constexpr size_t leastPoints = 10;
constexpr int iterations = 8;
constexpr double settled = 1e-3; // pixels, of all coefficients together

/// Least squares, weighted anew in each round by the residuals of the last one.
class HarmonicSolver
{
public:
    HarmonicSolver(const std::vector<EdgePoint>& points, const OutlineFitOptions& options);

    bool solve();

    const CommonShape& shape() const { return m_shape; }
    double radius() const { return m_radius; }
    double residual(size_t i) const { return m_points[i].radius - m_shape.at(m_harmonics[i]) - m_radius; }
    bool used(size_t i) const { return m_weights[i] > 0.1; }

private:
    void reweight();
    bool leastSquares();

    const std::vector<EdgePoint>& m_points;
    const OutlineFitOptions& m_options;
    const std::vector<Harmonics> m_harmonics;
    std::vector<double> m_weights;    // how well a point agrees
    std::vector<double> m_sharpness;  // how well a point was measured
    std::vector<double> m_magnitudes; // scratch
    CommonShape m_shape;
    double m_radius = 0;
};

HarmonicSolver::HarmonicSolver(const std::vector<EdgePoint>& points, const OutlineFitOptions& options)
    : m_points(points)
    , m_options(options)
    , m_harmonics(harmonicsOf(points))
    , m_weights(points.size(), 1.0)
{
    double steepest = 0;
    for (const EdgePoint& point : points)
        steepest = std::max(steepest, point.strength);
    m_sharpness.reserve(points.size());
    for (const EdgePoint& point : points)
        m_sharpness.push_back(options.steepCountsMore ? point.strength * point.strength / (steepest * steepest) : 1.0);
}

bool HarmonicSolver::solve()
{
    if (m_points.size() < leastPoints)
        return false;
    std::vector<double> radii;
    radii.reserve(m_points.size());
    for (const EdgePoint& point : m_points)
        radii.push_back(point.radius);
    m_radius = medianOf(radii);
    for (int i = 0; i < iterations; ++i) {
        reweight();
        const CommonShape before = m_shape;
        const double radius = m_radius;
        if (!leastSquares())
            return false;
        const double moved = std::abs(m_shape.x - before.x) + std::abs(m_shape.y - before.y) +
                             std::abs(m_shape.c2 - before.c2) + std::abs(m_shape.s2 - before.s2) +
                             std::abs(m_radius - radius);
        if (moved < settled)
            break;
    }
    reweight();
    return true;
}

void HarmonicSolver::reweight()
{
    m_magnitudes.clear();
    for (size_t i = 0; i < m_points.size(); ++i)
        m_magnitudes.push_back(std::abs(residual(i)));
    const double limit = std::max(tukeyCutOff * sigmaOf(m_magnitudes), m_options.outlierFloor);
    for (size_t i = 0; i < m_points.size(); ++i)
        m_weights[i] = tukeyWeight(residual(i) / limit);
}

bool HarmonicSolver::leastSquares()
{
    HarmonicEquations equations(1);
    for (size_t i = 0; i < m_points.size(); ++i)
        equations.add(m_harmonics[i], 0, m_points[i].radius, m_weights[i] * m_sharpness[i]);
    equations.addTiltPrior(m_options.tilted ? m_options.tiltPrior * m_radius : 0);
    return equations.solve(&m_shape, &m_radius);
}

} // namespace

OutlineFit fitOutline(const cv::Point2d& center, std::vector<EdgePoint>& points, const OutlineFitOptions& options)
{
    OutlineFit fit;
    HarmonicSolver solver(points, options);
    if (!solver.solve())
        return fit;
    const CommonShape& shape = solver.shape();
    fit.outline = {center + cv::Point2d(shape.x, shape.y), solver.radius(), shape.c2, shape.s2};
    double squares = 0;
    for (size_t i = 0; i < points.size(); ++i) {
        points[i].residual = solver.residual(i);
        points[i].used = solver.used(i);
        if (points[i].used) {
            squares += points[i].residual * points[i].residual;
            ++fit.used;
        }
    }
    fit.residual = fit.used > 0 ? std::sqrt(squares / fit.used) : 0;
    fit.valid = fit.used >= static_cast<int>(leastPoints) && fit.outline.radius > 0;
    return fit;
}

double coverage(const std::vector<EdgePoint>& points, int sectors)
{
    std::vector<bool> seen(static_cast<size_t>(sectors), false);
    for (const EdgePoint& point : points) {
        const double turn = point.angle / (2 * CV_PI);
        if (point.used)
            seen[static_cast<size_t>((turn - std::floor(turn)) * sectors) % seen.size()] = true;
    }
    return static_cast<double>(std::count(seen.begin(), seen.end(), true)) / sectors;
}

} // namespace finder
