#pragma once

#include <opencv2/core.hpp>

#include <cmath>

/// Shapes of the finder. Lengths are image pixels with the middle of the top-left pixel at (0, 0). Angles inside the
/// finder are radians in image axes (y down); only screenAngle() turns one into what leaves the engine.
namespace finder {

struct Range
{
    double low = 0;
    double high = 0;

    bool contains(double value) const { return value >= low && value <= high; }
    double middle() const { return (low + high) / 2; }
};

/// A circle seen under a slight tilt: r(t) = radius + c2 cos 2t + s2 sin 2t around its centre. To first order this is
/// an ellipse with half axes radius +- hypot(c2, s2).
struct Outline
{
    cv::Point2d center;
    double radius = 0;
    double c2 = 0;
    double s2 = 0;

    double radiusAt(double angle) const { return radius + c2 * std::cos(2 * angle) + s2 * std::sin(2 * angle); }

    /// The same outline in an image whose pixels are so many times smaller.
    Outline enlarged(double factor) const
    {
        const cv::Point2d corner(0.5, 0.5);
        return {(center + corner) * factor - corner, radius * factor, c2 * factor, s2 * factor};
    }
};

/// Direction from hub to hole in degrees: 0 along +x, counter-clockwise as seen on the screen, in [0, 360).
inline double screenAngle(const cv::Point2d& hub, const cv::Point2d& hole)
{
    const double degrees = std::atan2(hub.y - hole.y, hole.x - hub.x) * 180 / CV_PI;
    return degrees < 0 ? degrees + 360 : degrees;
}

} // namespace finder
