#include "Perspective.h"

#include <algorithm>

namespace finder {

namespace {

constexpr double flatSigma = 0.012; // 0.7 degrees: how flat wheels lie under the camera

std::complex<double> complexOf(const cv::Point2d& point)
{
    return {point.x, point.y};
}

cv::Point2d pointOf(const std::complex<double>& value)
{
    return {value.real(), value.imag()};
}

/// The place of a point off the optical axis, over the distance.
std::complex<double> directionOf(const cv::Point2d& point, const Camera& camera)
{
    return complexOf(point - camera.principal) * camera.pixelSize / camera.distance;
}

bool knowsScale(const Camera& camera)
{
    return camera.distance > 0 && camera.pixelSize > 0;
}

/// Distance of hole from axis over the rim's radius, when the axis is drawn to the principal point by this share.
double ringShare(const DepthSight& sight, const Camera& camera, double share)
{
    const cv::Point2d axis = sight.rim.center - share * (sight.rim.center - camera.principal);
    return cv::norm(sight.hole - axis) / sight.rim.radius;
}

/// Sums of a straight line through the ring's shares near one share of the way to the principal point.
struct Line
{
    double slopes = 0;    // squared deviations of the shares' derivatives from their mean
    double mixed = 0;     // the same, times those of the shares
    double residuals = 0; // squared deviations of the shares
    double radius = 0;    // mean

    Line(const std::vector<DepthSight>& sights, const Camera& camera, double at)
    {
        constexpr double h = 1e-4;
        const auto count = static_cast<double>(sights.size());
        double meanValue = 0;
        double meanSlope = 0;
        std::vector<std::pair<double, double>> all;
        for (const DepthSight& sight : sights) {
            const double value = ringShare(sight, camera, at);
            const double slope = (ringShare(sight, camera, at + h) - ringShare(sight, camera, at - h)) / (2 * h);
            all.emplace_back(value, slope);
            meanValue += value / count;
            meanSlope += slope / count;
            radius += sight.rim.radius / count;
        }
        for (const auto& [value, slope] : all) {
            slopes += (slope - meanSlope) * (slope - meanSlope);
            mixed += (slope - meanSlope) * (value - meanValue);
            residuals += (value - meanValue) * (value - meanValue);
        }
    }
};

} // namespace

Camera Camera::in(const cv::Size& image) const
{
    Camera camera = *this;
    if (principal == cv::Point2d())
        camera.principal = {0.5 * (image.width - 1), 0.5 * (image.height - 1)};
    return camera;
}

cv::Point2d axisAtDepth(const cv::Point2d& rimCenter, const Slope& slope, const Camera& camera, double depth)
{
    if (camera.distance <= 0 || depth == 0)
        return rimCenter;
    const double scale = camera.distance / (camera.distance + depth);
    cv::Point2d axis = camera.principal + (rimCenter - camera.principal) * scale;
    if (camera.pixelSize > 0)
        axis -= pointOf(slope) * (depth / camera.pixelSize * scale);
    return axis;
}

std::pair<Slope, Slope> slopesOf(const Outline& rim, const Camera& camera)
{
    if (!knowsScale(camera) || rim.radius <= 0)
        return {};
    const std::complex<double> x = directionOf(rim.center, camera);
    const std::complex<double> m = std::complex<double>(rim.c2, rim.s2) / rim.radius;
    const std::complex<double> root = std::sqrt(x * x - 4.0 * m);
    const std::pair<Slope, Slope> both{root - x, -root - x};
    return std::abs(both.first) <= std::abs(both.second) ? both : std::make_pair(both.second, both.first);
}

Slope expectedSlope(const Outline& rim, const Camera& camera, double sigma)
{
    const auto [likely, other] = slopesOf(rim, camera);
    // Heavy tails: where both are far from flat, neither is much likelier than the other.
    const auto prior = [sigma](const Slope& slope) { return std::pow(1 + std::norm(slope) / (sigma * sigma), -2); };
    const double odds = prior(other) / prior(likely);
    return (likely + odds * other) / (1 + odds);
}

cv::Point2d projectedCenter(const Outline& rim, const Slope& slope, const Camera& camera)
{
    if (!knowsScale(camera))
        return rim.center;
    return rim.center + pointOf(slope) * (rim.radius * rim.radius * camera.pixelSize / camera.distance);
}

cv::Point2d hubAxis(const Outline& rim, const Camera& camera, double depth)
{
    const Slope slope = expectedSlope(rim, camera, flatSigma);
    return axisAtDepth(projectedCenter(rim, slope, camera), slope, camera, depth);
}

std::optional<DepthEstimate> estimateDepth(const std::vector<DepthSight>& sights, const Camera& camera, double sigma)
{
    constexpr double least = 1e-9;
    constexpr double mostShare = 0.5; // a hole as far behind the rim as the camera is before it
    if (camera.distance <= 0 || sights.size() < 2)
        return {};
    double share = 0; // of the way to the principal point: depth / (distance + depth)
    for (int i = 0; i < 10; ++i) {
        const Line line(sights, camera, share);
        if (line.slopes < least)
            return {};
        share = std::clamp(share - line.mixed / line.slopes, -mostShare, mostShare);
    }
    const Line line(sights, camera, share);
    const auto spare = static_cast<double>(sights.size()) - 2;
    const double seen = spare > 0 ? line.residuals / spare : 0;
    const double error = std::sqrt(std::max(seen, sigma * sigma / (line.radius * line.radius)) / line.slopes);
    return DepthEstimate{camera.distance * share / (1 - share), camera.distance * error / ((1 - share) * (1 - share))};
}

} // namespace finder
