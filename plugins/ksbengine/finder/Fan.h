#pragma once

#include "Geometry.h"
#include "Rays.h"

#include <array>
#include <vector>

namespace finder {

/// Rays around a point, each smoothed by its neighbours.
class Fan
{
public:
    static constexpr int rays = 32;

    Fan(const cv::Mat& gray, const cv::Point2d& center, double reach, double step);

    /// Whether all rays lie inside of the image.
    bool whole() const { return m_whole; }
    const std::array<Ray, rays>& all() const { return m_rays; }

private:
    std::array<Ray, rays> m_rays;
    bool m_whole = true;
};

/// The part of a ray between two radii, and `window` values more on both sides.
Ray part(const Ray& ray, const Range& radius, int window);

/// Mean of a ray's values between two radii.
double meanOf(const Ray& ray, double from, double to);

} // namespace finder
