#include "HarmonicEquations.h"

#include "OutlineFit.h"

#include <algorithm>

namespace finder {

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

} // namespace finder
