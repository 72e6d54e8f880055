#include "guided/vision/PointSnap.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int rays = 72;
constexpr double smallestRadius = 2; // pixels
constexpr double roundness = 0.06;   // of the radius: what an outline may stray from its ellipse
constexpr double longestAxis = 2.0;  // to the shortest, of a hole seen aslant
constexpr double wholeOutline = 0.9; // share of the rays that have to meet it
constexpr double plainStep = 12;     // gray levels from side to side of an edge
constexpr double cornerShare = 0.25; // of the larger eigenvalue: what the smaller one of a corner is at least
constexpr double aroundEdge = 2;     // pixels by which an edge is refined
constexpr double edgeStep = 0.25;    // pixels

double length(const cv::Point2d& v)
{
    return std::hypot(v.x, v.y);
}

bool holds(const cv::Mat& gray, const cv::Point2d& p)
{
    return p.x >= 0 && p.y >= 0 && p.x <= gray.cols - 1 && p.y <= gray.rows - 1;
}

/// Between the pixels; the outermost ones go on beyond the picture.
double levelAt(const cv::Mat& gray, const cv::Point2d& p)
{
    const double x = std::clamp(p.x, 0.0, gray.cols - 1.0);
    const double y = std::clamp(p.y, 0.0, gray.rows - 1.0);
    const int x0 = std::min(int(x), std::max(0, gray.cols - 2));
    const int y0 = std::min(int(y), std::max(0, gray.rows - 2));
    const int x1 = std::min(x0 + 1, gray.cols - 1);
    const int y1 = std::min(y0 + 1, gray.rows - 1);
    const double fx = x - x0;
    const double fy = y - y0;
    const uchar* upper = gray.ptr<uchar>(y0);
    const uchar* lower = gray.ptr<uchar>(y1);
    return (1 - fy) * ((1 - fx) * upper[x0] + fx * upper[x1]) + fy * ((1 - fx) * lower[x0] + fx * lower[x1]);
}

/// The strongest step of the levels along a line, by the centre of the slope around it; `at` counts from `from`.
struct EdgeOnLine
{
    double at = 0;
    double step = 0; ///< gray levels a pixel, with its sign
};

EdgeOnLine strongestEdge(const cv::Mat& gray, const cv::Point2d& from, const cv::Point2d& along, double span)
{
    const int count = std::max(3, int(span / edgeStep));
    std::vector<double> slope(count);
    for (int i = 0; i < count; ++i) {
        const cv::Point2d here = from + along * (i * edgeStep);
        slope[i] = 0.5 * (levelAt(gray, here + along) - levelAt(gray, here - along));
    }
    const auto best =
        std::max_element(slope.begin(), slope.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
    const int reach = int(aroundEdge / edgeStep);
    const int middle = int(best - slope.begin());
    double weight = 0;
    double moment = 0;
    for (int i = std::max(0, middle - reach); i <= std::min(count - 1, middle + reach); ++i) {
        const double own = slope[i] * *best > 0 ? std::abs(slope[i]) : 0;
        weight += own;
        moment += own * i;
    }
    return {weight > 0 ? moment / weight * edgeStep : 0, *best};
}

/// The outline of a blob around its middle, by the edge on each ray; empty when it is not all around.
std::vector<cv::Point2f> outlineAround(const cv::Mat& gray, const cv::Point2d& middle, double radius)
{
    std::vector<cv::Point2f> outline;
    int dark = 0;
    for (int i = 0; i < rays; ++i) {
        const double angle = 2 * CV_PI * i / rays;
        const cv::Point2d along(std::cos(angle), std::sin(angle));
        const double inner = radius * 0.4;
        const EdgeOnLine edge = strongestEdge(gray, middle + along * inner, along, radius * 1.2);
        const cv::Point2d point = middle + along * (inner + edge.at);
        if (std::abs(edge.step) < plainStep / 4 || !holds(gray, point))
            continue;
        dark += edge.step > 0 ? 1 : -1;
        outline.emplace_back(point);
    }
    const bool oneSided = std::abs(dark) > wholeOutline * rays;
    return outline.size() > wholeOutline * rays && oneSided ? outline : std::vector<cv::Point2f>();
}

/// How far a point lies from an ellipse, along the ray from its centre.
double strayOf(const cv::Point2f& point, const cv::RotatedRect& ellipse)
{
    const double turn = ellipse.angle * CV_PI / 180;
    const cv::Point2d arm = cv::Point2d(point) - cv::Point2d(ellipse.center);
    const cv::Point2d own(arm.x * std::cos(turn) + arm.y * std::sin(turn),
                          arm.y * std::cos(turn) - arm.x * std::sin(turn));
    const double a = 0.5 * ellipse.size.width;
    const double b = 0.5 * ellipse.size.height;
    const double scale = std::hypot(own.x / a, own.y / b);
    return scale > 0 ? std::abs(1 - 1 / scale) * length(arm) : 0;
}

/// An ellipse through the outline without what strays, such as a scratch across it.
bool fitOutline(std::vector<cv::Point2f> outline, cv::RotatedRect* ellipse)
{
    for (int round = 0; round < 2 && outline.size() >= 8; ++round) {
        *ellipse = cv::fitEllipse(outline);
        const double shorter = std::min(ellipse->size.width, ellipse->size.height);
        const double longer = std::max(ellipse->size.width, ellipse->size.height);
        if (!(shorter > 2 * smallestRadius) || longer > longestAxis * shorter)
            return false;
        const double allowed = std::max(0.5, roundness * 0.5 * shorter);
        const auto strays = [&](const cv::Point2f& point) { return strayOf(point, *ellipse) > allowed; };
        outline.erase(std::remove_if(outline.begin(), outline.end(), strays), outline.end());
    }
    return outline.size() > 0.75 * rays;
}

/// The blob that holds the point, or the one nearest to it that lies in the window whole.
bool blobAt(const cv::Mat& binary, const cv::Point& near, cv::Point2d* middle, double* radius)
{
    cv::Mat labels;
    cv::Mat stats;
    cv::Mat centroids;
    const int count = cv::connectedComponentsWithStats(binary, labels, stats, centroids);
    double nearest = 1e9;
    for (int i = 1; i < count; ++i) {
        const int* own = stats.ptr<int>(i);
        const int right = own[cv::CC_STAT_LEFT] + own[cv::CC_STAT_WIDTH];
        const int bottom = own[cv::CC_STAT_TOP] + own[cv::CC_STAT_HEIGHT];
        const bool whole =
            own[cv::CC_STAT_LEFT] > 0 && own[cv::CC_STAT_TOP] > 0 && right < binary.cols && bottom < binary.rows;
        const double size = 0.25 * (own[cv::CC_STAT_WIDTH] + own[cv::CC_STAT_HEIGHT]);
        const double filled = own[cv::CC_STAT_AREA] / (CV_PI * size * size);
        const cv::Point2d center(centroids.at<double>(i, 0), centroids.at<double>(i, 1));
        const double away = length(center - cv::Point2d(near)) - size;
        if (!whole || size < smallestRadius || filled < 0.55 || filled > 1.35 || away >= nearest)
            continue;
        nearest = away;
        *middle = center;
        *radius = size;
    }
    return nearest < 1e9;
}

SnappedPoint holeAmong(const cv::Mat& gray, const cv::Rect& window, const QPointF& near, double reach, int polarity)
{
    cv::Mat binary;
    cv::GaussianBlur(gray(window), binary, {3, 3}, 0);
    cv::threshold(binary, binary, 0, 255, polarity | cv::THRESH_OTSU);
    const cv::Point2d corner(window.tl());
    const cv::Point here(int(std::lround(near.x())) - window.x, int(std::lround(near.y())) - window.y);
    cv::Point2d middle;
    double radius = 0;
    if (!blobAt(binary, here, &middle, &radius))
        return {};
    cv::RotatedRect ellipse;
    if (!fitOutline(outlineAround(gray, corner + middle, radius), &ellipse))
        return {};
    // From its own centre once more: the blob's may lie aside by light and shadow.
    const double found = 0.25 * (ellipse.size.width + ellipse.size.height);
    if (!fitOutline(outlineAround(gray, ellipse.center, found), &ellipse))
        return {};
    const double own = 0.25 * (ellipse.size.width + ellipse.size.height);
    const QPointF center(ellipse.center.x, ellipse.center.y);
    const double away = std::hypot(center.x() - near.x(), center.y() - near.y());
    if (away > std::max(reach, own))
        return {};
    return {SnappedPoint::Kind::Hole, center, own};
}

SnappedPoint snapToCorner(const cv::Mat& gray, const cv::Rect& window, const QPointF& near, double reach)
{
    cv::Mat eigen;
    cv::cornerEigenValsAndVecs(gray(window), eigen, 5, 3);
    const cv::Rect2d inside(1, 1, window.width - 2, window.height - 2);
    double best = 0;
    cv::Point2f at;
    for (int y = 1; y < eigen.rows - 1; ++y) {
        for (int x = 1; x < eigen.cols - 1; ++x) {
            const cv::Vec6f& own = eigen.at<cv::Vec6f>(y, x);
            const double larger = std::max(own[0], own[1]);
            const double smaller = std::min(own[0], own[1]);
            const double away = std::hypot(x + window.x - near.x(), y + window.y - near.y());
            if (smaller > best && smaller > cornerShare * larger && away < reach) {
                best = smaller;
                at = cv::Point2f(float(x + window.x), float(y + window.y));
            }
        }
    }
    if (best < 1e-3 || !inside.contains(cv::Point2d(at.x - window.x, at.y - window.y)))
        return {};
    std::vector<cv::Point2f> points{at};
    const int half = std::clamp(int(reach / 3), 3, 8);
    cv::cornerSubPix(gray, points, {half, half}, {-1, -1},
                     {cv::TermCriteria::COUNT + cv::TermCriteria::EPS, 40, 0.001});
    const QPointF point(points[0].x, points[0].y);
    if (std::hypot(point.x() - near.x(), point.y() - near.y()) > reach)
        return {};
    return {SnappedPoint::Kind::Corner, point, 0};
}

SnappedPoint snapToEdge(const cv::Mat& gray, const cv::Rect& window, const QPointF& near, double reach)
{
    cv::Mat smooth;
    cv::GaussianBlur(gray(window), smooth, {5, 5}, 0);
    cv::Mat dx;
    cv::Mat dy;
    cv::Sobel(smooth, dx, CV_32F, 1, 0, 3, 0.125);
    cv::Sobel(smooth, dy, CV_32F, 0, 1, 3, 0.125);
    double best = 0;
    cv::Point2d at;
    cv::Point2d along;
    for (int y = 1; y < dx.rows - 1; ++y) {
        for (int x = 1; x < dx.cols - 1; ++x) {
            const cv::Point2d slope(dx.at<float>(y, x), dy.at<float>(y, x));
            const cv::Point2d here(x + window.x, y + window.y);
            const double away = length(here - cv::Point2d(near.x(), near.y()));
            const double steep = length(slope) * (1 - 0.7 * away / reach); // the nearer of two alike
            if (away < reach && length(slope) > plainStep / 4 && steep > best) {
                best = steep;
                at = here;
                along = slope * (1 / length(slope));
            }
        }
    }
    if (!(best > 0))
        return {};
    const double before = 2 * aroundEdge; // so that the whole slope is weighed
    const EdgeOnLine edge = strongestEdge(gray, at - along * before, along, 2 * before);
    const cv::Point2d refined = at + along * (edge.at - before);
    // Along the edge the person knows best: only the way across it is taken.
    const double across = (refined - cv::Point2d(near.x(), near.y())).dot(along);
    const QPointF point(near.x() + across * along.x, near.y() + across * along.y);
    return {SnappedPoint::Kind::Edge, point, 0};
}

cv::Rect windowAround(const cv::Mat& gray, const QPointF& near, double reach)
{
    const int half = int(std::ceil(reach));
    const cv::Rect wanted(int(std::lround(near.x())) - half, int(std::lround(near.y())) - half, 2 * half + 1,
                          2 * half + 1);
    return wanted & cv::Rect(0, 0, gray.cols, gray.rows);
}

} // namespace

SnappedPoint snapToHole(const cv::Mat& gray, const QPointF& near, double reach)
{
    SnappedPoint best;
    // A hole may be larger than the marker's reach: its outline is then looked for farther out.
    for (const double around : {reach, 2.5 * reach}) {
        const cv::Rect window = windowAround(gray, near, around);
        if (window.width < 8 || window.height < 8)
            break;
        for (const int polarity : {int(cv::THRESH_BINARY_INV), int(cv::THRESH_BINARY)}) {
            const SnappedPoint found = holeAmong(gray, window, near, reach, polarity);
            const auto away = [&](const SnappedPoint& s) {
                return std::hypot(s.point.x() - near.x(), s.point.y() - near.y());
            };
            if (found.kind == SnappedPoint::Kind::Hole &&
                (best.kind != SnappedPoint::Kind::Hole || away(found) < away(best)))
                best = found;
        }
        if (best.kind == SnappedPoint::Kind::Hole)
            return best;
    }
    best.point = near;
    return best;
}

SnappedPoint snapPoint(const cv::Mat& gray, const QPointF& near, double reach)
{
    SnappedPoint found = snapToHole(gray, near, reach);
    if (found.kind == SnappedPoint::Kind::Hole)
        return found;
    const cv::Rect window = windowAround(gray, near, reach);
    if (window.width >= 8 && window.height >= 8) {
        found = snapToCorner(gray, window, near, reach);
        if (found.kind == SnappedPoint::Kind::None)
            found = snapToEdge(gray, window, near, reach);
    }
    if (found.kind == SnappedPoint::Kind::None)
        found.point = near;
    return found;
}
