#include "OutlineFit.h"

#include <algorithm>
#include <array>

namespace finder {

namespace {

constexpr int terms = 5;
constexpr int iterations = 8;
constexpr double settled = 1e-3; // pixels, of all coefficients together
constexpr double tukey = 4.685;  // 95 % efficiency for Gaussian errors

using Basis = std::array<double, terms>;

Basis basisAt(double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {1, c, s, c * c - s * s, 2 * c * s};
}

double valueOf(const Basis& coefficients, const Basis& basis)
{
    double value = 0;
    for (int i = 0; i < terms; ++i)
        value += coefficients[i] * basis[i];
    return value;
}

/// The middle of the absolute residuals, scaled to a standard deviation.
double robustSigma(std::vector<double>& magnitudes)
{
    const auto middle = magnitudes.begin() + static_cast<std::ptrdiff_t>(magnitudes.size() / 2);
    std::nth_element(magnitudes.begin(), middle, magnitudes.end());
    return 1.4826 * *middle;
}

/// The weighted normal equations of an outline's coefficients.
class HarmonicEquations
{
public:
    void add(const Basis& basis, double radius, double weight)
    {
        m_total += weight;
        for (int row = 0; row < terms; ++row) {
            m_right[row] += weight * basis[row] * radius;
            for (int column = 0; column <= row; ++column)
                m_normal(row, column) += weight * basis[row] * basis[column];
        }
    }

    /// A full circle decides its tilt by itself; the priors only speak where an arc is missing.
    void addPriors(const OutlineFitOptions& options, double radius)
    {
        const double expected = options.tiltPrior * radius;
        const double tilt =
            options.tilted ? 0.001 * m_total / std::max(1e-6, expected * expected) : 1e9 * (1 + m_total);
        m_normal(1, 1) += 1e-9 * (1 + m_total);
        m_normal(2, 2) += 1e-9 * (1 + m_total);
        m_normal(3, 3) += tilt;
        m_normal(4, 4) += tilt;
    }

    bool solve(Basis* coefficients)
    {
        for (int row = 0; row < terms; ++row) {
            for (int column = row + 1; column < terms; ++column)
                m_normal(row, column) = m_normal(column, row);
        }
        cv::Vec<double, terms> solution;
        if (m_total <= 0 || !cv::solve(m_normal, m_right, solution, cv::DECOMP_CHOLESKY))
            return false;
        std::copy_n(solution.val, terms, coefficients->begin());
        return std::isfinite(coefficients->front());
    }

private:
    cv::Matx<double, terms, terms> m_normal = cv::Matx<double, terms, terms>::zeros(); // lower half until solved
    cv::Vec<double, terms> m_right = cv::Vec<double, terms>::all(0);
    double m_total = 0;
};

/// Least squares, weighted anew in each round by what the last one left.
class HarmonicSolver
{
public:
    HarmonicSolver(const std::vector<EdgePoint>& points, const OutlineFitOptions& options);

    bool solve();

    const Basis& coefficients() const { return m_coefficients; }
    double residual(size_t i) const { return m_points[i].radius - valueOf(m_coefficients, m_basis[i]); }
    bool used(size_t i) const { return m_weights[i] > 0.1; }

private:
    bool start();
    void reweight();
    bool leastSquares();

    const std::vector<EdgePoint>& m_points;
    const OutlineFitOptions& m_options;
    std::vector<Basis> m_basis;
    std::vector<double> m_weights; // how well a point agrees
    std::vector<double> m_trust;   // how well a point was measured
    std::vector<double> m_magnitudes;
    Basis m_coefficients{};
};

HarmonicSolver::HarmonicSolver(const std::vector<EdgePoint>& points, const OutlineFitOptions& options)
    : m_points(points)
    , m_options(options)
    , m_weights(points.size(), 1.0)
{
    m_basis.reserve(points.size());
    for (const EdgePoint& point : points)
        m_basis.push_back(basisAt(point.angle));
    double steepest = 0;
    for (const EdgePoint& point : points)
        steepest = std::max(steepest, point.strength);
    for (const EdgePoint& point : points)
        m_trust.push_back(options.steepCountsMore ? point.strength * point.strength / (steepest * steepest) : 1.0);
}

bool HarmonicSolver::solve()
{
    if (!start())
        return false;
    for (int i = 0; i < iterations; ++i) {
        reweight();
        const Basis before = m_coefficients;
        if (!leastSquares())
            return false;
        double moved = 0;
        for (int k = 0; k < terms; ++k)
            moved += std::abs(m_coefficients[k] - before[k]);
        if (moved < settled)
            break;
    }
    reweight();
    return true;
}

/// A circle of the middle radius.
bool HarmonicSolver::start()
{
    std::vector<double> radii;
    for (const EdgePoint& point : m_points)
        radii.push_back(point.radius);
    if (radii.size() < 2 * terms)
        return false;
    const auto middle = radii.begin() + static_cast<std::ptrdiff_t>(radii.size() / 2);
    std::nth_element(radii.begin(), middle, radii.end());
    m_coefficients = {*middle, 0, 0, 0, 0};
    return true;
}

void HarmonicSolver::reweight()
{
    m_magnitudes.clear();
    for (size_t i = 0; i < m_points.size(); ++i)
        m_magnitudes.push_back(std::abs(residual(i)));
    const double sigma = robustSigma(m_magnitudes);
    const double limit = tukey * std::max(sigma, m_options.outlierFloor / tukey);
    for (size_t i = 0; i < m_points.size(); ++i) {
        const double t = residual(i) / limit;
        m_weights[i] = std::abs(t) < 1 ? (1 - t * t) * (1 - t * t) : 0;
    }
}

bool HarmonicSolver::leastSquares()
{
    HarmonicEquations equations;
    for (size_t i = 0; i < m_points.size(); ++i)
        equations.add(m_basis[i], m_points[i].radius, m_weights[i] * m_trust[i]);
    equations.addPriors(m_options, m_coefficients[0]);
    return equations.solve(&m_coefficients);
}

} // namespace

OutlineFit fitOutline(const cv::Point2d& center, std::vector<EdgePoint>& points, const OutlineFitOptions& options)
{
    OutlineFit fit;
    HarmonicSolver solver(points, options);
    if (!solver.solve())
        return fit;
    const Basis& k = solver.coefficients();
    fit.outline = {center + cv::Point2d(k[1], k[2]), k[0], k[3], k[4]};
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
    fit.valid = fit.used >= 2 * terms && fit.outline.radius > 0;
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
