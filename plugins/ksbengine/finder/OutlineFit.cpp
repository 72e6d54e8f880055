#include "OutlineFit.h"

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

Harmonics Harmonics::at(double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {c, s, c * c - s * s, 2 * c * s};
}

std::vector<Harmonics> harmonicsOf(const std::vector<EdgePoint>& points)
{
    std::vector<Harmonics> harmonics;
    harmonics.reserve(points.size());
    for (const EdgePoint& point : points)
        harmonics.push_back(Harmonics::at(point.angle));
    return harmonics;
}

void HarmonicEquations::add(const Harmonics& h, size_t circle, double radius, double weight)
{
    const Vector basis{h.c, h.s, h.c2, h.s2};
    Circle& own = m_circles[circle];
    own.weight += weight;
    own.radius += weight * radius;
    for (int row = 0; row < 4; ++row) {
        const double weighted = weight * basis[row];
        own.basis[row] += weighted;
        m_right[row] += weighted * radius;
        for (int column = 0; column <= row; ++column)
            m_normal(row, column) += weighted * basis[column];
    }
}

double HarmonicEquations::totalWeight() const
{
    double total = 0;
    for (const Circle& circle : m_circles)
        total += circle.weight;
    return total;
}

void HarmonicEquations::addTiltPrior(double sigma)
{
    const double total = totalWeight();
    m_tiltPrior = sigma > 0 ? 0.001 * total / std::max(1e-6, sigma * sigma) : 1e9 * (1 + total);
}

bool HarmonicEquations::solve(CommonShape* shape, double* radii) const
{
    const double ridge = 1e-9 * (1 + totalWeight()); // where the points leave a parameter open, it stays zero
    cv::Matx44d normal = m_normal;
    cv::Vec4d right(m_right.data());
    for (int i = 0; i < 4; ++i)
        normal(i, i) += i < 2 ? ridge : ridge + m_tiltPrior;
    for (const Circle& circle : m_circles) {
        if (circle.weight <= 0)
            continue;
        for (int row = 0; row < 4; ++row) {
            const double share = circle.basis[row] / circle.weight;
            right[row] -= share * circle.radius;
            for (int column = 0; column <= row; ++column)
                normal(row, column) -= share * circle.basis[column];
        }
    }
    for (int row = 0; row < 4; ++row) {
        for (int column = row + 1; column < 4; ++column)
            normal(row, column) = normal(column, row);
    }
    cv::Vec4d solution;
    if (!cv::solve(normal, right, solution, cv::DECOMP_CHOLESKY) || !std::isfinite(solution[0]))
        return false;
    *shape = {solution[0], solution[1], solution[2], solution[3]};
    for (size_t k = 0; k < m_circles.size(); ++k) {
        const Circle& circle = m_circles[k];
        const Harmonics sums{circle.basis[0], circle.basis[1], circle.basis[2], circle.basis[3]};
        if (circle.weight > 0)
            radii[k] = (circle.radius - shape->at(sums)) / circle.weight;
    }
    return true;
}

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
