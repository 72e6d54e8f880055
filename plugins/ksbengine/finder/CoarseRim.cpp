#include "CoarseRim.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>

namespace finder {

namespace {

constexpr int rays = 128;
constexpr float weakestEdge = 4.0F;    // gray levels per pixel; below it is noise even after the reduction
constexpr double edgeShare = 0.10;     // of all pixels that count as edges
constexpr double aligned = 0.8;        // cosine between an edge's normal and the ray
constexpr double leastCoverage = 0.35; // of a circle that is worth a look
constexpr double nearlyAsComplete = 0.7;
constexpr int centersTried = 3;

cv::Rect centerWindow(const cv::Size& size, double maxOffset)
{
    const int reach = cvCeil(maxOffset * std::min(size.width, size.height));
    const cv::Rect window(size.width / 2 - reach, size.height / 2 - reach, 2 * reach + 1, 2 * reach + 1);
    return window & cv::Rect(0, 0, size.width, size.height);
}

/// For each ray and radius: does a circle's edge pass here, and which side of it is brighter.
struct CircleEvidence
{
    int firstRadius;
    std::vector<int> brightOutside;
    std::vector<int> brightInside;
    int raysInside = 0;
};

bool isPeak(const std::vector<int>& counts, int i)
{
    for (int k = -2; k <= 2; ++k) {
        const int j = i + k;
        if (k != 0 && j >= 0 && j < static_cast<int>(counts.size()) &&
            (counts[j] > counts[i] || (counts[j] == counts[i] && k < 0)))
            return false;
    }
    return true;
}

void outermostFirst(std::vector<RimGuess>* guesses)
{
    double best = 0;
    for (const RimGuess& guess : *guesses)
        best = std::max(best, guess.coverage);
    std::stable_sort(guesses->begin(), guesses->end(), [best](const RimGuess& a, const RimGuess& b) {
        const bool aComplete = a.coverage >= nearlyAsComplete * best;
        const bool bComplete = b.coverage >= nearlyAsComplete * best;
        if (aComplete != bComplete)
            return aComplete;
        return a.outline.radius > b.outline.radius;
    });
}

} // namespace

void CoarseRim::computeGradients(const cv::Mat& small)
{
    cv::GaussianBlur(small, m_smooth, {5, 5}, 1.0);
    cv::Sobel(m_smooth, m_gx, CV_32F, 1, 0, 3, 0.125);
    cv::Sobel(m_smooth, m_gy, CV_32F, 0, 1, 3, 0.125);
    cv::magnitude(m_gx, m_gy, m_magnitude);
}

float CoarseRim::chooseThreshold() const
{
    constexpr int bins = 256;
    std::array<int, bins> histogram{};
    for (int y = 0; y < m_magnitude.rows; ++y) {
        const auto* row = m_magnitude.ptr<float>(y);
        for (int x = 0; x < m_magnitude.cols; ++x)
            ++histogram[std::min(bins - 1, static_cast<int>(row[x] * 2))];
    }
    int left = static_cast<int>(edgeShare * static_cast<double>(m_magnitude.total()));
    int bin = bins - 1;
    while (bin > 0 && left > histogram[bin])
        left -= histogram[bin--];
    return std::max(weakestEdge, static_cast<float>(bin) / 2);
}

void CoarseRim::voteFrom(int x, int y, const Range& radius, const cv::Rect& window)
{
    const float magnitude = m_magnitude.at<float>(y, x);
    const float nx = m_gx.at<float>(y, x) / magnitude;
    const float ny = m_gy.at<float>(y, x) / magnitude;
    for (const float sign : {-1.0F, 1.0F}) {
        for (auto r = static_cast<float>(radius.low); r <= static_cast<float>(radius.high); r += 1.0F) {
            const cv::Point point(cvRound(x + sign * r * nx), cvRound(y + sign * r * ny));
            if (window.contains(point))
                ++m_votes.at<ushort>(point - window.tl());
        }
    }
}

void CoarseRim::vote(const Range& radius, const cv::Rect& window)
{
    m_votes.create(window.size(), CV_16UC1);
    m_votes.setTo(0);
    for (int y = 0; y < m_magnitude.rows; ++y) {
        const auto* row = m_magnitude.ptr<float>(y);
        for (int x = 0; x < m_magnitude.cols; ++x) {
            if (row[x] >= m_threshold)
                voteFrom(x, y, radius, window);
        }
    }
    cv::Mat smooth;
    cv::GaussianBlur(m_votes, smooth, {7, 7}, 1.5);
    m_votes = smooth;
}

std::vector<cv::Point> CoarseRim::centers(const cv::Rect& window) const
{
    std::vector<cv::Point> found;
    cv::Mat votes = m_votes.clone();
    for (int i = 0; i < centersTried; ++i) {
        double most = 0;
        cv::Point at;
        cv::minMaxLoc(votes, nullptr, &most, nullptr, &at);
        if (most <= 0)
            break;
        found.push_back(at + window.tl());
        cv::circle(votes, at, 6, cv::Scalar(0), cv::FILLED);
    }
    return found;
}

std::vector<RimGuess> CoarseRim::circlesAround(const cv::Point2d& center, const Range& radius) const
{
    const int first = std::max(2, cvFloor(radius.low) - 1);
    const int count = cvCeil(radius.high) + 2 - first;
    std::array<std::vector<int>, 2> counts{std::vector<int>(count, 0), std::vector<int>(count, 0)};
    std::vector<std::array<bool, 2>> seen(static_cast<size_t>(count) + 2);
    for (int ray = 0; ray < rays; ++ray) {
        const double angle = 2 * CV_PI * ray / rays;
        const double dx = std::cos(angle);
        const double dy = std::sin(angle);
        std::fill(seen.begin(), seen.end(), std::array<bool, 2>{false, false});
        for (int i = 0; i < count; ++i) {
            const int x = cvRound(center.x + dx * (first + i));
            const int y = cvRound(center.y + dy * (first + i));
            if (x < 0 || y < 0 || x >= m_gx.cols || y >= m_gx.rows)
                break;
            const float magnitude = m_magnitude.at<float>(y, x);
            const double outward = m_gx.at<float>(y, x) * dx + m_gy.at<float>(y, x) * dy;
            if (magnitude >= m_threshold && std::abs(outward) >= aligned * magnitude)
                seen[i + 1][outward > 0] = true;
        }
        for (int i = 0; i < count; ++i) {
            for (const int side : {0, 1})
                counts[side][i] += seen[i][side] || seen[i + 1][side] || seen[i + 2][side];
        }
    }
    std::vector<RimGuess> circles;
    for (const int side : {0, 1}) {
        for (int i = 0; i < count; ++i) {
            if (counts[side][i] >= leastCoverage * rays && isPeak(counts[side], i))
                circles.push_back(refine(center, first + i, side == 1));
        }
    }
    circles.erase(std::remove_if(circles.begin(), circles.end(),
                                 [&radius](const RimGuess& guess) {
                                     return guess.coverage < leastCoverage || !radius.contains(guess.outline.radius);
                                 }),
                  circles.end());
    return circles;
}

RimGuess CoarseRim::refine(const cv::Point2d& center, double radius, bool brightOutside) const
{
    constexpr int reach = 4;
    RimGuess guess;
    guess.brightOutside = brightOutside;
    Outline outline{center, radius, 0, 0};
    std::vector<EdgePoint> points;
    for (int pass = 0; pass < 2; ++pass) {
        points.clear();
        for (int i = 0; i < rays; ++i) {
            const double angle = 2 * CV_PI * i / rays;
            const double start = outline.radiusAt(angle) - reach;
            double best = m_threshold / 2;
            double at = -1;
            for (int k = 0; k <= 2 * reach; ++k) {
                const int x = cvRound(outline.center.x + std::cos(angle) * (start + k));
                const int y = cvRound(outline.center.y + std::sin(angle) * (start + k));
                if (x < 0 || y < 0 || x >= m_gx.cols || y >= m_gx.rows)
                    break;
                const double outward = m_gx.at<float>(y, x) * std::cos(angle) + m_gy.at<float>(y, x) * std::sin(angle);
                const double value = brightOutside ? outward : -outward;
                if (value > best) {
                    best = value;
                    at = start + k;
                }
            }
            if (at > 0)
                points.push_back({angle, at, best, 0, false});
        }
        const OutlineFit fit = fitOutline(outline.center, points, {true, 0.02, 1.5});
        if (!fit.valid)
            return guess;
        outline = fit.outline;
    }
    guess.outline = outline;
    guess.coverage = static_cast<double>(std::count_if(points.begin(), points.end(),
                                                       [](const EdgePoint& point) { return point.used; })) /
                     rays;
    return guess;
}

std::vector<RimGuess> CoarseRim::find(const cv::Mat& small, const Range& radius, double maxOffset)
{
    computeGradients(small);
    m_threshold = chooseThreshold();
    const cv::Rect window = centerWindow(small.size(), maxOffset);
    vote(radius, window);
    std::vector<RimGuess> all;
    double mostComplete = 0;
    for (const cv::Point& center : centers(window)) {
        std::vector<RimGuess> circles = circlesAround(center, radius);
        double sum = 0;
        for (const RimGuess& guess : circles)
            sum += guess.coverage * guess.coverage;
        // A wheel has several concentric edges; a chance circle through rollers or a shadow stands alone.
        if (sum > mostComplete) {
            mostComplete = sum;
            all = std::move(circles);
        }
    }
    outermostFirst(&all);
    return all;
}

} // namespace finder
