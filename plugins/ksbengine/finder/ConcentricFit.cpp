#include "ConcentricFit.h"

#include "RadiusPile.h"

#include <algorithm>
#include <numeric>

namespace finder {

namespace {

constexpr double leastSupport = 0.12; // of the rays, for a circle to count

double middleStrength(const std::vector<EdgePoint>& points)
{
    std::vector<double> strengths;
    strengths.reserve(points.size());
    for (const EdgePoint& point : points)
        strengths.push_back(point.strength);
    const auto middle = strengths.begin() + static_cast<std::ptrdiff_t>(strengths.size() / 2);
    std::nth_element(strengths.begin(), middle, strengths.end());
    return *middle;
}

/// The weighted normal equations of the parameters that all circles share and of one radius for each circle.
class JointEquations
{
public:
    static constexpr int shared = 4; // shift of the centre, tilt

    explicit JointEquations(int circles)
        : m_size(shared + circles)
        , m_normal(cv::Mat_<double>::zeros(m_size, m_size))
        , m_right(cv::Mat_<double>::zeros(m_size, 1))
    {
    }

    void add(const Place& place, int circle, double radius, double weight)
    {
        constexpr int terms = shared + 1;
        const double basis[terms] = {place.c, place.s, place.c2, place.s2, 1};
        const int column[terms] = {0, 1, 2, 3, shared + circle};
        for (int p = 0; p < terms; ++p) {
            m_right(column[p]) += weight * basis[p] * radius;
            for (int q = 0; q < terms; ++q)
                m_normal(column[p], column[q]) += weight * basis[p] * basis[q];
        }
        m_total += weight;
    }

    /// A wheel is seen nearly from the front: where arcs are missing the tilt is small.
    void expectTilt(double expected)
    {
        for (int p = 0; p < m_size; ++p)
            m_normal(p, p) += p == 2 || p == 3 ? 0.001 * m_total / (expected * expected) : 1e-9 * (1 + m_total);
    }

    bool solve(cv::Mat_<double>* solution) const
    {
        if (m_total < 2 * m_size)
            return false;
        return cv::solve(m_normal, m_right, *solution, cv::DECOMP_CHOLESKY);
    }

private:
    int m_size;
    cv::Mat_<double> m_normal;
    cv::Mat_<double> m_right;
    double m_total = 0;
};

/// Common centre and tilt and one radius for each circle, by least squares on the points near a circle.
class JointFit
{
public:
    JointFit(std::vector<EdgePoint>& points, const std::vector<Place>& places, cv::Point2d move,
             std::vector<double> radii);

    bool run(const ConcentricOptions& options);
    ConcentricFit result(const cv::Point2d& center, int rays);

private:
    /// The point's radius as seen from the common centre, without tilt.
    double reduced(size_t i) const
    {
        const Place& p = m_places[i];
        return m_points[i].radius - m_shared[0] * p.c - m_shared[1] * p.s - m_shared[2] * p.c2 - m_shared[3] * p.s2;
    }

    size_t nearest(size_t i) const;
    bool step();
    JointEquations equations() const;
    void adopt(const cv::Mat_<double>& solution);
    std::vector<int> markUsed(double* squares);

    std::vector<EdgePoint>& m_points;
    const std::vector<Place>& m_places;
    std::vector<double> m_radii;
    std::vector<double> m_trust; // for each circle
    std::vector<double> m_sharp; // for each point: a steep edge is placed better
    double m_shared[JointEquations::shared];
    double m_near = 1;
    double m_tilt = 0.01;
};

JointFit::JointFit(std::vector<EdgePoint>& points, const std::vector<Place>& places, cv::Point2d move,
                   std::vector<double> radii)
    : m_points(points)
    , m_places(places)
    , m_radii(std::move(radii))
    , m_trust(m_radii.size(), 0.05)
    , m_shared{move.x, move.y, 0, 0}
{
    const double middle = middleStrength(points);
    for (const EdgePoint& point : points) {
        const double relative = std::min(1.0, point.strength / (1.5 * middle));
        m_sharp.push_back(relative * relative);
    }
    m_trust[0] = 1;
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

bool JointFit::step()
{
    cv::Mat_<double> solution;
    if (!equations().solve(&solution))
        return false;
    adopt(solution);
    return true;
}

JointEquations JointFit::equations() const
{
    JointEquations equations(static_cast<int>(m_radii.size()));
    for (size_t i = 0; i < m_points.size(); ++i) {
        const size_t k = nearest(i);
        const double t = (reduced(i) - m_radii[k]) / m_near;
        if (std::abs(t) >= 1)
            continue;
        const double weight = (1 - t * t) * (1 - t * t) * m_trust[k] * m_sharp[i];
        equations.add(m_places[i], static_cast<int>(k), m_points[i].radius, weight);
    }
    equations.expectTilt(m_tilt * m_radii.front());
    return equations;
}

size_t JointFit::nearest(size_t i) const
{
    const double r = reduced(i);
    size_t best = 0;
    for (size_t k = 1; k < m_radii.size(); ++k) {
        if (std::abs(r - m_radii[k]) < std::abs(r - m_radii[best]))
            best = k;
    }
    return best;
}

void JointFit::adopt(const cv::Mat_<double>& solution)
{
    constexpr int shared = JointEquations::shared;
    for (int p = 0; p < shared; ++p)
        m_shared[p] = solution(p);
    for (size_t k = 0; k < m_radii.size(); ++k) {
        const double radius = solution(shared + static_cast<int>(k));
        if (radius > 1) // a circle that lost all its points keeps its radius
            m_radii[k] = radius;
    }
}

ConcentricFit JointFit::result(const cv::Point2d& center, int rays)
{
    ConcentricFit fit{
        center + cv::Point2d(m_shared[0], m_shared[1]), m_shared[2], m_shared[3], {}, m_radii[0], 0, true};
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
        point.residual = reduced(i) - m_radii[k];
        point.used = std::abs(point.residual) < m_near;
        if (point.used) {
            ++counts[k];
            *squares += point.residual * point.residual;
        }
    }
    return counts;
}

double strengthNear(const std::vector<EdgePoint>& points, const std::vector<Place>& places, const cv::Point2d& move,
                    double radius, double near)
{
    double sum = 0;
    for (size_t i = 0; i < points.size(); ++i) {
        if (std::abs(points[i].radius - move.x * places[i].c - move.y * places[i].s - radius) < 1.5 * near)
            sum += points[i].strength;
    }
    return sum;
}

/// The outermost good circle.
size_t leadOf(const std::vector<double>& radii, const std::vector<double>& weights)
{
    constexpr double good = 0.4; // of the strongest circle
    const double best = *std::max_element(weights.begin(), weights.end());
    size_t lead = 0;
    for (size_t k = 0; k < radii.size(); ++k) {
        if (weights[k] >= good * best && (weights[lead] < good * best || radii[k] > radii[lead]))
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
    const std::vector<Place> places = placesOf(points);
    RadiusPile pile(points, places, options.reach);
    const cv::Point2d move = bestMove(pile, options.reach, options.bin);
    pile.fill(move.x, move.y, options.bin);
    std::vector<double> radii = pile.peaks(leastSupport * rays, 3 * options.bin);
    if (radii.empty())
        return {};
    std::vector<double> weights;
    weights.reserve(radii.size());
    for (const double radius : radii)
        weights.push_back(strengthNear(points, places, move, radius, options.bin));
    std::swap(radii[0], radii[leadOf(radii, weights)]);
    JointFit joint(points, places, move, radii);
    return joint.run(options) ? joint.result(center, rays) : ConcentricFit();
}

} // namespace finder
