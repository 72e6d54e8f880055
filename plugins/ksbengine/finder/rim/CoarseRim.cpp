#include "CoarseRim.h"

#include "finder/Edges.h"
#include "finder/Vectorise.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>

namespace finder {

namespace {

constexpr int rays = 128;
constexpr float weakestEdge = 3.0F;   // gray levels per pixel; below it is noise even after the reduction
constexpr int surroundings = 41;      // pixels, of the mean that an edge counts against
constexpr int alongEdge = 11;         // pixels around, whose gradients have to agree with an edge
constexpr double edgeShare = 0.08;    // of all pixels that count as edges
constexpr double leastCoverage = 0.3; // of a circle that is worth a look
constexpr double nearlyAsComplete = 0.7;
constexpr double innerShare = 0.7; // of the smallest rim, from where on edges are read
constexpr double coarseReach = 6;  // pixels by which votes may miss the centre
constexpr int centersTried = 3;
constexpr int voteBits = 16; // of a fraction of a pixel
constexpr int voteUnit = 1 << voteBits;
constexpr double complete = 2;     // sum of squared supports, beyond which a centre needs no second look
constexpr float voteStep = 2;      // pixels along a normal from vote to vote; they are smoothed anyway
constexpr double rivalVotes = 0.5; // of the best centre, for another one that is worth a look

cv::Rect centerWindow(const cv::Size& size, double maxOffset)
{
    const int reach = cvCeil(maxOffset * std::min(size.width, size.height));
    const cv::Rect window(size.width / 2 - reach, size.height / 2 - reach, 2 * reach + 1, 2 * reach + 1);
    return window & cv::Rect(0, 0, size.width, size.height);
}

/// Shortens a range of distances to those where from + distance * step lies between 0 and `last`.
void clip(float from, float step, float last, Range* range)
{
    if (std::abs(step) < 1e-6F) {
        if (from < 0 || from > last)
            range->high = range->low - 1;
        return;
    }
    const double one = -from / step;
    const double two = (last - from) / step;
    range->low = std::max(range->low, std::min(one, two));
    range->high = std::min(range->high, std::max(one, two));
}

/// How far a ray runs before it leaves the picture.
double reachInside(const cv::Mat& picture, const cv::Point2d& center, double angle)
{
    const double dx = std::cos(angle);
    const double dy = std::sin(angle);
    const double alongX = dx > 0 ? (picture.cols - 2 - center.x) / dx : dx < 0 ? -center.x / dx : 1e9;
    const double alongY = dy > 0 ? (picture.rows - 2 - center.y) / dy : dy < 0 ? -center.y / dy : 1e9;
    return std::min(alongX, alongY);
}

double sumOfSquares(const std::vector<ConcentricCircle>& circles)
{
    double sum = 0;
    for (const ConcentricCircle& circle : circles)
        sum += circle.support * circle.support;
    return sum;
}

/// The outermost that is nearly as complete as the best comes first.
void appendRims(const ConcentricFit& fit, const Range& radius, std::vector<Outline>* rims)
{
    std::vector<ConcentricCircle> circles;
    double best = 0;
    for (const ConcentricCircle& circle : fit.circles) {
        if (!radius.contains(circle.radius) || circle.support < leastCoverage)
            continue;
        circles.push_back(circle);
        best = std::max(best, circle.support);
    }
    std::sort(circles.begin(), circles.end(), [best](const ConcentricCircle& a, const ConcentricCircle& b) {
        const bool aComplete = a.support >= nearlyAsComplete * best;
        const bool bComplete = b.support >= nearlyAsComplete * best;
        return aComplete != bComplete ? aComplete : a.radius > b.radius;
    });
    for (const ConcentricCircle& circle : circles)
        rims->push_back({fit.center, circle.radius, fit.c2, fit.s2});
}

/// Gray levels per pixel, of Sobel's sums.
VC_VECTORISED void magnitudes(const short* gx, const short* gy, int count, float* VC_RESTRICT magnitude)
{
    for (int x = 0; x < count; ++x) {
        const auto a = static_cast<float>(gx[x]);
        const auto b = static_cast<float>(gy[x]);
        magnitude[x] = 0.125F * std::sqrt(a * a + b * b);
    }
}

/// (gx + i gy)^2 and |gx + i gy|^2.
void squares(const short* gx, const short* gy, int count, cv::Vec3f* squares)
{
    for (int x = 0; x < count; ++x) {
        const auto a = static_cast<float>(gx[x]);
        const auto b = static_cast<float>(gy[x]);
        squares[x] = {a * a - b * b, 2 * a * b, a * a + b * b};
    }
}

} // namespace

void CoarseRim::computeGradients(const cv::Mat& small)
{
    cv::GaussianBlur(small, m_smooth, {5, 5}, 1.0);
    cv::spatialGradient(m_smooth, m_gx, m_gy, 3);
    m_magnitude.create(small.size(), CV_32FC1);
    for (int y = 0; y < small.rows; ++y)
        magnitudes(m_gx.ptr<short>(y), m_gy.ptr<short>(y), small.cols, m_magnitude.ptr<float>(y));
}

/// Against the mean around, so that a busy background does not drown the dim edges of a wheel before it; and as
/// coherent as the gradients around are, |sum g^2| / sum |g|^2 with g = gx + i gy: 1 along an edge, little in a pattern
/// of dots or in rust, whose edges run in all directions.
void CoarseRim::weighLocally()
{
    cv::Mat around;
    cv::boxFilter(m_magnitude, around, CV_32F, {surroundings, surroundings});
    m_squares.create(m_magnitude.size(), CV_32FC3);
    for (int y = 0; y < m_magnitude.rows; ++y)
        squares(m_gx.ptr<short>(y), m_gy.ptr<short>(y), m_magnitude.cols, m_squares.ptr<cv::Vec3f>(y));
    cv::boxFilter(m_squares, m_squares, CV_32F, {alongEdge, alongEdge});
    for (int y = 0; y < m_magnitude.rows; ++y) {
        auto* row = m_magnitude.ptr<float>(y);
        const auto* mean = around.ptr<float>(y);
        const auto* sum = m_squares.ptr<cv::Vec3f>(y);
        for (int x = 0; x < m_magnitude.cols; ++x) {
            const float coherence = std::sqrt(sum[x][0] * sum[x][0] + sum[x][1] * sum[x][1]) / (sum[x][2] + 1);
            row[x] = row[x] < weakestEdge ? 0 : coherence * row[x] / (mean[x] + weakestEdge);
        }
    }
}

float CoarseRim::chooseThreshold() const
{
    constexpr int bins = 256;
    constexpr float levels = 32;
    std::array<int, bins> histogram{};
    for (int y = 0; y < m_magnitude.rows; y += 2) {
        const auto* row = m_magnitude.ptr<float>(y);
        for (int x = 0; x < m_magnitude.cols; ++x)
            ++histogram[std::min(bins - 1, static_cast<int>(row[x] * levels))];
    }
    int left = static_cast<int>(edgeShare / 2 * static_cast<double>(m_magnitude.total())); // of every other row
    int bin = bins - 1;
    while (bin > 0 && left > histogram[bin])
        left -= histogram[bin--];
    return std::max(1, bin) / levels;
}

void CoarseRim::voteFrom(int x, int y, const Range& radius, const cv::Rect& window)
{
    const cv::Point2f from(static_cast<float>(x - window.x), static_cast<float>(y - window.y));
    cv::Point2f step(m_gx.at<short>(y, x), m_gy.at<short>(y, x));
    const cv::Point2f toMiddle = cv::Point2f(window.size()) * 0.5F - from;
    // The window is smaller than a rim: only one way along the normal leads into it.
    step *= (toMiddle.dot(step) < 0 ? -1.0F : 1.0F) / std::sqrt(step.dot(step));
    Range part = radius;
    clip(from.x, step.x, static_cast<float>(window.width - 1), &part);
    clip(from.y, step.y, static_cast<float>(window.height - 1), &part);
    if (part.high < part.low)
        return;
    const auto start = static_cast<float>(part.low);
    int column = cvRound((from.x + start * step.x + 0.5F) * voteUnit);
    int row = cvRound((from.y + start * step.y + 0.5F) * voteUnit);
    const int columns = cvRound(voteStep * step.x * voteUnit);
    const int rows = cvRound(voteStep * step.y * voteUnit);
    for (int left = static_cast<int>((part.high - part.low) / voteStep); left >= 0; --left) {
        ++m_votes.ptr<ushort>(row >> voteBits)[column >> voteBits];
        column += columns;
        row += rows;
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
    double first = 0;
    for (int i = 0; i < centersTried; ++i) {
        double most = 0;
        cv::Point at;
        cv::minMaxLoc(votes, nullptr, &most, nullptr, &at);
        if (most <= 0 || (i > 0 && most < rivalVotes * first))
            break;
        if (i == 0)
            first = most;
        found.push_back(at + window.tl());
        cv::circle(votes, at, 6, cv::Scalar(0), cv::FILLED);
    }
    return found;
}

ConcentricFit CoarseRim::circlesAround(const cv::Point2d& center, const Range& radius) const
{
    // Edges inside of the rim have the same centre.
    const double first = std::max(2.0, innerShare * radius.low);
    const double toBorder = std::min({center.x, center.y, m_smooth.cols - 2 - center.x, m_smooth.rows - 2 - center.y});
    std::vector<EdgePoint> points;
    Ray ray;
    for (int i = 0; i < rays; ++i) {
        const double angle = 2 * CV_PI * i / rays;
        const double last = std::max(toBorder, reachInside(m_smooth, center, angle));
        const int count = cvFloor(std::min(radius.high + 4, last) - first);
        if (count > 8 && sampleRay(m_smooth, center, angle, first, 1.0, count, &ray))
            appendEdges(ray, EdgeKind::Either, {1, 0}, &points);
    }
    return fitConcentric(center, points, rays, {coarseReach, 1.0, 1.5});
}

std::vector<Outline> CoarseRim::find(const cv::Mat& small, const Range& radius, double maxOffset)
{
    computeGradients(small);
    weighLocally();
    m_threshold = chooseThreshold();
    const cv::Rect window = centerWindow(small.size(), maxOffset);
    vote(radius, window);
    std::vector<ConcentricFit> fits;
    for (const cv::Point& center : centers(window)) {
        const bool known = std::any_of(fits.begin(), fits.end(), [&](const ConcentricFit& fit) {
            return sumOfSquares(fit.circles) > complete && cv::norm(fit.center - cv::Point2d(center)) < coarseReach;
        });
        if (known) // it would lead to the same circles
            continue;
        ConcentricFit fit = circlesAround(center, radius);
        if (fit.valid)
            fits.push_back(std::move(fit));
    }
    // A wheel has several concentric edges; a chance circle through rollers or a shadow stands alone.
    std::stable_sort(fits.begin(), fits.end(), [](const ConcentricFit& a, const ConcentricFit& b) {
        return sumOfSquares(a.circles) > sumOfSquares(b.circles);
    });
    std::vector<Outline> rims;
    for (const ConcentricFit& fit : fits)
        appendRims(fit, radius, &rims);
    return rims;
}

} // namespace finder
