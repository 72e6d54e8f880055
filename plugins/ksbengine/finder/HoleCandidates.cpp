#include "HoleCandidates.h"

#include "Vectorise.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>

namespace finder {

namespace {

constexpr double meanWidth = 0.8;     // of the box whose mean stands for a place, in radii
constexpr double aroundAt = 1.6;      // where the surroundings are looked at, in radii
constexpr double insideAt = 0.45;     // where a valve in the hole leaves it dark, in radii
constexpr double bandAt = 0.75;       // where even a valve leaves the hole dark, in radii
constexpr double bandWidth = 0.25;    // of the box whose mean stands for a place of that band, in radii
constexpr int widestMean = 7;         // of a box, in places of the map
constexpr double leastContrast = 6.0; // gray levels

using Offsets = std::array<cv::Point, 8>;

Offsets circleOffsets(double radius)
{
    Offsets offsets;
    for (size_t i = 0; i < offsets.size(); ++i) {
        const double angle = 2 * CV_PI * static_cast<double>(i) / offsets.size();
        offsets[i] = {cvRound(radius * std::cos(angle)), cvRound(radius * std::sin(angle))};
    }
    return offsets;
}

inline uchar smaller(uchar a, uchar b)
{
    return a < b ? a : b;
}

inline uchar larger(uchar a, uchar b)
{
    return a > b ? a : b;
}

/// Keeps the three smallest of the values that come by.
inline void keep(uchar value, uchar& lowest, uchar& second, uchar& third)
{
    const uchar a = larger(lowest, value);
    lowest = smaller(lowest, value);
    const uchar b = larger(second, a);
    second = smaller(second, a);
    third = smaller(third, b);
}

using Rows = std::array<const uchar*, 8>;

/// How bright it is around, place by place: the third smallest of eight values, as two of the eight may be dark without
/// harm, the edge of the ledge or a shadow; but no two opposite ones, as in a groove.
VC_VECTORISED void surroundingsOf(const Rows& rows, int count, uchar* VC_RESTRICT result)
{
    const uchar *r0 = rows[0], *r1 = rows[1], *r2 = rows[2], *r3 = rows[3];
    const uchar *r4 = rows[4], *r5 = rows[5], *r6 = rows[6], *r7 = rows[7];
    for (int i = 0; i < count; ++i) {
        uchar lowest = 255;
        uchar second = 255;
        uchar third = 255;
        keep(r0[i], lowest, second, third);
        keep(r1[i], lowest, second, third);
        keep(r2[i], lowest, second, third);
        keep(r3[i], lowest, second, third);
        keep(r4[i], lowest, second, third);
        keep(r5[i], lowest, second, third);
        keep(r6[i], lowest, second, third);
        keep(r7[i], lowest, second, third);
        const uchar pairs = smaller(smaller(larger(r0[i], r4[i]), larger(r1[i], r5[i])),
                                    smaller(larger(r2[i], r6[i]), larger(r3[i], r7[i])));
        result[i] = smaller(third, pairs);
    }
}

VC_VECTORISED void meanOfEight(const Rows& rows, int count, uchar* VC_RESTRICT result)
{
    const uchar *r0 = rows[0], *r1 = rows[1], *r2 = rows[2], *r3 = rows[3];
    const uchar *r4 = rows[4], *r5 = rows[5], *r6 = rows[6], *r7 = rows[7];
    for (int i = 0; i < count; ++i) {
        const auto sum = static_cast<uint16_t>(r0[i] + r1[i] + r2[i] + r3[i] + r4[i] + r5[i] + r6[i] + r7[i] + 4);
        result[i] = static_cast<uchar>(sum >> 3);
    }
}

/// How much darker the darkest of three is than the surroundings.
VC_VECTORISED void darkerThan(const uchar* around, const uchar* a, const uchar* b, const uchar* c, int count,
                              uchar* VC_RESTRICT result)
{
    for (int i = 0; i < count; ++i) {
        const uchar inside = smaller(smaller(a[i], b[i]), c[i]);
        result[i] = static_cast<uchar>(larger(around[i], inside) - inside);
    }
}

/// Sums of `size` rows, the first of them given.
VC_VECTORISED void sumRows(const uchar* first, std::ptrdiff_t stride, int size, int count, uint16_t* VC_RESTRICT sums)
{
    std::copy_n(first, count, sums);
    for (int i = 1; i < size; ++i) {
        const uchar* row = first + i * stride;
        for (int x = 0; x < count; ++x)
            sums[x] = static_cast<uint16_t>(sums[x] + row[x]);
    }
}

/// Means of `size` neighbouring sums each; `share` is the part of one pixel, in 65536ths.
template <int size>
VC_VECTORISED void meansOfSums(const uint16_t* sums, int count, uint16_t share, uchar* VC_RESTRICT means)
{
    for (int x = 0; x < count; ++x) {
        uint16_t sum = 0;
        for (int i = 0; i < size; ++i)
            sum = static_cast<uint16_t>(sum + sums[x + i]);
        means[x] = static_cast<uchar>((static_cast<uint32_t>(sum) * share + 32768U) >> 16);
    }
}

struct Spot
{
    int value;
    double rank;
    cv::Point at;
};

/// `shares` multiplies the contrast of each column to its rank.
std::vector<Spot> peaks(const cv::Mat& contrast, const cv::Range& rows, const cv::Range& columns,
                        const std::vector<double>& shares)
{
    std::vector<Spot> spots;
    for (int y = std::max(1, rows.start); y < std::min(contrast.rows - 1, rows.end); ++y) {
        const uchar* row = contrast.ptr(y);
        const uchar* above = contrast.ptr(y - 1);
        const uchar* below = contrast.ptr(y + 1);
        for (int x = std::max(1, columns.start); x < std::min(contrast.cols - 1, columns.end); ++x) {
            const uchar value = row[x];
            if (value > leastContrast && value >= row[x - 1] && value > row[x + 1] && value >= above[x] &&
                value > below[x])
                spots.push_back({value, value * shares[static_cast<size_t>(x)], {x, y}});
        }
    }
    std::stable_sort(spots.begin(), spots.end(), [](const Spot& a, const Spot& b) { return a.rank > b.rank; });
    return spots;
}

bool isNear(const HoleCandidate& known, const cv::Point2d& point)
{
    const cv::Point2d d = known.point - point;
    return d.dot(d) < known.size * known.size;
}

} // namespace

/// Means over squares of odd size; at the border, where none fits, the values themselves.
void HoleCandidates::computeMeans(const cv::Mat& map, int size, cv::Mat* means)
{
    map.copyTo(*means);
    const int count = map.cols - size + 1;
    if (size <= 1 || count <= 0)
        return;
    m_sums.resize(static_cast<size_t>(map.cols));
    const auto share = static_cast<uint16_t>(65536 / (size * size));
    const auto meansOf = size == 3 ? meansOfSums<3> : size == 5 ? meansOfSums<5> : meansOfSums<7>;
    for (int y = 0; y + size <= map.rows; ++y) {
        sumRows(map.ptr(y), static_cast<std::ptrdiff_t>(map.step[0]), size, map.cols, m_sums.data());
        meansOf(m_sums.data(), count, share, means->ptr(y + size / 2) + size / 2);
    }
}

void HoleCandidates::computeContrast(const cv::Mat& map, double radius, const cv::Range& columns)
{
    const auto odd = [](double size) { return std::clamp(cvRound(size) | 1, 1, widestMean); };
    computeMeans(map, odd(meanWidth * radius), &m_mean);
    const Offsets around = circleOffsets(aroundAt * radius);
    computeMeans(map, odd(bandWidth * radius), &m_fine);
    const Offsets within = circleOffsets(insideAt * radius);
    const Offsets band = circleOffsets(bandAt * radius);
    m_contrast.create(map.size(), CV_8UC1);
    m_contrast.setTo(0);
    const int margin = cvCeil(aroundAt * radius) + 1;
    const int first = std::max(margin, columns.start);
    const int count = std::min(map.cols - margin, columns.end) - first;
    if (count <= 0)
        return;
    m_rows.resize(3 * static_cast<size_t>(count));
    uchar* const surroundings = m_rows.data();
    uchar* const middle = surroundings + count;
    uchar* const bandMean = middle + count;
    for (int y = margin; y < map.rows - margin; ++y) {
        const auto at = [&](const cv::Mat& from, const cv::Point& offset) {
            return from.ptr(y + offset.y) + first + offset.x;
        };
        Rows rows{};
        for (size_t i = 0; i < rows.size(); ++i)
            rows[i] = at(m_mean, around[i]);
        surroundingsOf(rows, count, surroundings);
        for (size_t i = 0; i < rows.size(); ++i)
            rows[i] = at(m_mean, within[i]);
        meanOfEight(rows, count, middle);
        for (size_t i = 0; i < rows.size(); ++i)
            rows[i] = at(m_fine, band[i]);
        meanOfEight(rows, count, bandMean);
        darkerThan(surroundings, m_mean.ptr(y) + first, middle, bandMean, count, m_contrast.ptr(y) + first);
    }
}

void HoleCandidates::find(const RingMap& ring, const Range& radii, double radius, int most,
                          const Likelihood& likelihood, std::vector<HoleCandidate>* found)
{
    const cv::Range columns(cvFloor((radii.low - ring.radiusOfColumn(0)) / ring.step()),
                            cvCeil((radii.high - ring.radiusOfColumn(0)) / ring.step()) + 1);
    computeContrast(ring.map(), radius / ring.step(), {columns.start - 1, columns.end + 1});
    std::vector<double> shares;
    shares.reserve(static_cast<size_t>(ring.map().cols));
    for (int x = 0; x < ring.map().cols; ++x)
        shares.push_back(likelihood(ring.radiusOfColumn(x)));
    const cv::Range rows(ring.padding(), ring.padding() + ring.turn());
    int added = 0;
    for (const Spot& spot : peaks(m_contrast, rows, columns, shares)) {
        const cv::Point2d point = ring.toImage(spot.at);
        if (std::any_of(found->begin(), found->end(), [&](const HoleCandidate& known) { return isNear(known, point); }))
            continue;
        found->push_back({point, static_cast<double>(spot.value), radius, spot.rank});
        if (++added == most)
            return;
    }
}

} // namespace finder
