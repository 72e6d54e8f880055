#include "RadiusPile.h"

#include "Vectorise.h"

#include <algorithm>

namespace finder {

namespace {

constexpr size_t mostCircles = 5;
constexpr size_t startsTried = 3;

struct Move
{
    cv::Point2d by;
    double concentration = 0;
};

void searchAround(RadiusPile& pile, const cv::Point2d& from, double span, double step, double bin,
                  std::vector<Move>* moves)
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

/// In which pile each point lies, and how much of it belongs to the next one; the first and the last pile take what
/// lies beyond.
VC_VECTORISED void project(const float* radii, const float* cosines, const float* sines, float a, float b, float scale,
                           float last, int count, int* VC_RESTRICT piles, float* VC_RESTRICT parts)
{
    for (int i = 0; i < count; ++i) {
        const float at = std::min(std::max(radii[i] * scale - a * cosines[i] - b * sines[i], 0.0F), last);
        piles[i] = static_cast<int>(at);
        parts[i] = at - static_cast<float>(piles[i]);
    }
}

} // namespace

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

RadiusPile::RadiusPile(const std::vector<EdgePoint>& points, const std::vector<Place>& places, double reach)
    : m_piles(points.size())
    , m_parts(points.size())
{
    const auto ends = std::minmax_element(points.begin(), points.end(),
                                          [](const EdgePoint& a, const EdgePoint& b) { return a.radius < b.radius; });
    m_low = ends.first->radius - 1.5 * reach - 2;
    m_width = ends.second->radius + 1.5 * reach + 2 - m_low;
    for (size_t i = 0; i < points.size(); ++i) {
        m_radii.push_back(static_cast<float>(points[i].radius - m_low));
        m_cosines.push_back(static_cast<float>(places[i].c));
        m_sines.push_back(static_cast<float>(places[i].s));
    }
}

void RadiusPile::fill(double a, double b, double bin)
{
    m_bin = bin;
    m_counts.assign(static_cast<size_t>(m_width / bin) + 3, 0.0F);
    const auto scale = static_cast<float>(1 / bin);
    project(m_radii.data(), m_cosines.data(), m_sines.data(), static_cast<float>(a) * scale,
            static_cast<float>(b) * scale, scale, static_cast<float>(m_counts.size() - 2),
            static_cast<int>(m_piles.size()), m_piles.data(), m_parts.data());
    for (size_t i = 0; i < m_piles.size(); ++i) {
        float* const count = &m_counts[static_cast<size_t>(m_piles[i])];
        count[0] += 1 - m_parts[i];
        count[1] += m_parts[i];
    }
}

double RadiusPile::concentration() const
{
    float sum = 0;
    for (const float count : m_counts)
        sum += count * count * count;
    return sum;
}

std::vector<double> RadiusPile::peaks(double least, double apart) const
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

cv::Point2d bestMove(RadiusPile& pile, double reach, double finestBin)
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

} // namespace finder
