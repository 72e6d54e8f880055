#include "RadiusHistogram.h"

#include "Vectorise.h"

#include <algorithm>

namespace finder {

namespace {

constexpr size_t mostCircles = 5;
constexpr size_t startsTried = 3;

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

} // namespace

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

} // namespace finder
