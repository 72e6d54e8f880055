#include "ConcentricFit.h"

#include <algorithm>

namespace finder {

namespace {

constexpr double leastSupport = 0.12; // of the rays, for a circle to count
constexpr size_t mostCircles = 5;
constexpr size_t startsTried = 5;

struct Place
{
    double c, s, c2, s2; // cos and sin of the direction and of twice the direction
};

std::vector<Place> placesOf(const std::vector<EdgePoint>& points)
{
    std::vector<Place> places;
    places.reserve(points.size());
    for (const EdgePoint& point : points) {
        const double c = std::cos(point.angle);
        const double s = std::sin(point.angle);
        places.push_back({c, s, c * c - s * s, 2 * c * s});
    }
    return places;
}

double middleStrength(const std::vector<EdgePoint>& points)
{
    std::vector<double> strengths;
    for (const EdgePoint& point : points)
        strengths.push_back(point.strength);
    const auto middle = strengths.begin() + static_cast<std::ptrdiff_t>(strengths.size() / 2);
    std::nth_element(strengths.begin(), middle, strengths.end());
    return *middle;
}

/// How the edges' radii pile up when seen from a moved centre.
class Pile
{
public:
    Pile(const std::vector<EdgePoint>& points, const std::vector<Place>& places, double reach)
        : m_points(points)
        , m_places(places)
    {
        const auto ends = std::minmax_element(
            points.begin(), points.end(), [](const EdgePoint& a, const EdgePoint& b) { return a.radius < b.radius; });
        m_low = ends.first->radius - 1.5 * reach - 2;
        m_width = ends.second->radius + 1.5 * reach + 2 - m_low;
    }

    void fill(double a, double b, double bin)
    {
        m_bin = bin;
        m_counts.assign(static_cast<size_t>(m_width / bin) + 2, 0.0F);
        const double scale = 1 / bin;
        for (size_t i = 0; i < m_points.size(); ++i) {
            const double r = m_points[i].radius - a * m_places[i].c - b * m_places[i].s;
            const double at = (r - m_low) * scale;
            const auto k = static_cast<size_t>(at);
            const auto part = static_cast<float>(at - static_cast<double>(k));
            if (k + 1 < m_counts.size()) {
                m_counts[k] += 1 - part;
                m_counts[k + 1] += part;
            }
        }
    }

    double concentration() const
    {
        float sum = 0;
        for (const float count : m_counts)
            sum += count * count * count;
        return sum;
    }

    /// Radii of the piles of at least `least` points, highest first, none nearer than `apart` to a higher one.
    std::vector<double> peaks(double least, double apart) const
    {
        std::vector<std::pair<double, double>> found;
        for (size_t k = 1; k + 1 < m_counts.size(); ++k) {
            const double around = m_counts[k - 1] + m_counts[k] + m_counts[k + 1];
            if (m_counts[k] >= m_counts[k - 1] && m_counts[k] > m_counts[k + 1] && around >= least)
                found.emplace_back(
                    around, m_low + (static_cast<double>(k) + (m_counts[k + 1] - m_counts[k - 1]) / around) * m_bin);
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

private:
    const std::vector<EdgePoint>& m_points;
    const std::vector<Place>& m_places;
    std::vector<float> m_counts;
    double m_low = 0;
    double m_width = 0;
    double m_bin = 1;
};

struct Move
{
    cv::Point2d by;
    double concentration = 0;
};

void searchAround(Pile& pile, const cv::Point2d& from, double span, double step, double bin, std::vector<Move>* moves)
{
    for (double a = -span; a <= span + 1e-9; a += step) {
        for (double b = -span; b <= span + 1e-9; b += step) {
            const cv::Point2d by = from + cv::Point2d(a, b);
            pile.fill(by.x, by.y, bin);
            moves->push_back({by, pile.concentration()});
        }
    }
    std::sort(moves->begin(), moves->end(),
              [](const Move& a, const Move& b) { return a.concentration > b.concentration; });
}

/// The best moves of a list sorted by concentration, no two within `apart` pixels.
std::vector<Move> distinct(const std::vector<Move>& sorted, double apart, size_t most)
{
    std::vector<Move> kept;
    for (const Move& move : sorted) {
        const bool near = std::any_of(kept.begin(), kept.end(),
                                      [&](const Move& other) { return cv::norm(other.by - move.by) < apart; });
        if (!near && kept.size() < most)
            kept.push_back(move);
    }
    return kept;
}

/// The move of the centre that piles the radii up highest: a grid, then finer ones around its best places.
cv::Point2d bestMove(Pile& pile, double reach, double finestBin)
{
    std::vector<Move> coarse;
    const double step = std::max(1.0, finestBin);
    searchAround(pile, {}, reach, 2 * step, 2 * finestBin, &coarse);
    Move best;
    for (const Move& start : distinct(coarse, 4 * step, startsTried)) {
        std::vector<Move> fine;
        searchAround(pile, start.by, step, step, finestBin, &fine);
        const cv::Point2d from = fine.front().by;
        fine.clear();
        searchAround(pile, from, step / 2, step / 2, finestBin, &fine);
        if (fine.front().concentration > best.concentration)
            best = fine.front();
    }
    return best.by;
}

/// Common centre and tilt and one radius for each circle, by least squares on the points near a circle.
class JointFit
{
public:
    JointFit(std::vector<EdgePoint>& points, const std::vector<Place>& places, cv::Point2d move,
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

    bool run(const ConcentricOptions& options)
    {
        m_tilt = options.tilt;
        for (const double wider : {3.0, 2.0, 1.5, 1.2, 1.0, 1.0}) {
            m_near = wider * options.near;
            if (!step())
                return false;
        }
        return true;
    }

    ConcentricFit result(const cv::Point2d& center, int rays)
    {
        ConcentricFit fit{
            center + cv::Point2d(m_shared[0], m_shared[1]), m_shared[2], m_shared[3], {}, m_radii[0], 0, true};
        std::vector<int> counts(m_radii.size(), 0);
        double squares = 0;
        int used = 0;
        for (size_t i = 0; i < m_points.size(); ++i) {
            const size_t k = nearest(i);
            m_points[i].residual = reduced(i) - m_radii[k];
            m_points[i].used = std::abs(m_points[i].residual) < m_near;
            if (m_points[i].used) {
                ++counts[k];
                ++used;
                squares += m_points[i].residual * m_points[i].residual;
            }
        }
        for (size_t k = 0; k < m_radii.size(); ++k)
            fit.circles.push_back({m_radii[k], static_cast<double>(counts[k]) / rays});
        std::sort(fit.circles.begin(), fit.circles.end(),
                  [](const ConcentricCircle& a, const ConcentricCircle& b) { return a.radius < b.radius; });
        fit.residual = used > 0 ? std::sqrt(squares / used) : 0;
        return fit;
    }

private:
    /// The point's radius as seen from the common centre, without tilt.
    double reduced(size_t i) const
    {
        const Place& p = m_places[i];
        return m_points[i].radius - m_shared[0] * p.c - m_shared[1] * p.s - m_shared[2] * p.c2 - m_shared[3] * p.s2;
    }

    size_t nearest(size_t i) const
    {
        const double r = reduced(i);
        size_t best = 0;
        for (size_t k = 1; k < m_radii.size(); ++k) {
            if (std::abs(r - m_radii[k]) < std::abs(r - m_radii[best]))
                best = k;
        }
        return best;
    }

    bool step()
    {
        const int circles = static_cast<int>(m_radii.size());
        const int size = 4 + circles;
        cv::Mat_<double> normal = cv::Mat_<double>::zeros(size, size);
        cv::Mat_<double> right = cv::Mat_<double>::zeros(size, 1);
        double total = 0;
        for (size_t i = 0; i < m_points.size(); ++i) {
            const size_t k = nearest(i);
            const double t = (reduced(i) - m_radii[k]) / m_near;
            if (std::abs(t) >= 1)
                continue;
            const double weight = (1 - t * t) * (1 - t * t) * m_trust[k] * m_sharp[i];
            const double basis[5] = {m_places[i].c, m_places[i].s, m_places[i].c2, m_places[i].s2, 1};
            const int column[5] = {0, 1, 2, 3, 4 + static_cast<int>(k)};
            for (int p = 0; p < 5; ++p) {
                right(column[p]) += weight * basis[p] * m_points[i].radius;
                for (int q = 0; q < 5; ++q)
                    normal(column[p], column[q]) += weight * basis[p] * basis[q];
            }
            total += weight;
        }
        // A wheel is seen nearly from the front: where arcs are missing the tilt is small.
        const double expected = m_tilt * m_radii.front();
        for (int p = 0; p < size; ++p)
            normal(p, p) += p == 2 || p == 3 ? 0.001 * total / (expected * expected) : 1e-9 * (1 + total);
        cv::Mat_<double> solution;
        if (total < 2 * size || !cv::solve(normal, right, solution, cv::DECOMP_CHOLESKY))
            return false;
        for (int p = 0; p < 4; ++p)
            m_shared[p] = solution(p);
        for (int k = 0; k < circles; ++k) {
            if (solution(4 + k) > 1) // a circle that lost all its points keeps its radius
                m_radii[static_cast<size_t>(k)] = solution(4 + k);
        }
        return true;
    }

    std::vector<EdgePoint>& m_points;
    const std::vector<Place>& m_places;
    std::vector<double> m_radii;
    std::vector<double> m_trust; // for each circle
    std::vector<double> m_sharp; // for each point: a steep edge is placed better
    double m_shared[4];
    double m_near = 1;
    double m_tilt = 0.01;
};

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

} // namespace

ConcentricFit fitConcentric(const cv::Point2d& center, std::vector<EdgePoint>& points, int rays,
                            const ConcentricOptions& options)
{
    if (points.size() < 20)
        return {};
    const std::vector<Place> places = placesOf(points);
    Pile pile(points, places, options.reach);
    const cv::Point2d move = bestMove(pile, options.reach, options.bin);
    pile.fill(move.x, move.y, options.bin);
    std::vector<double> radii = pile.peaks(leastSupport * rays, 3 * options.bin);
    if (radii.empty())
        return {};
    // The outermost good circle leads.
    size_t lead = 0;
    std::vector<double> weights;
    for (size_t k = 0; k < radii.size(); ++k)
        weights.push_back(strengthNear(points, places, move, radii[k], options.bin));
    const double best = *std::max_element(weights.begin(), weights.end());
    for (size_t k = 0; k < radii.size(); ++k) {
        if (weights[k] >= 0.4 * best && (weights[lead] < 0.4 * best || radii[k] > radii[lead]))
            lead = k;
    }
    std::swap(radii[0], radii[lead]);
    JointFit joint(points, places, move, radii);
    return joint.run(options) ? joint.result(center, rays) : ConcentricFit();
}

} // namespace finder
