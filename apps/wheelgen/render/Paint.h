#pragma once

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>

/// Small helpers of everything that paints.
namespace wheel {

/// Part of a pixel that an edge `distance` pixels away leaves covered; positive inside. For a straight edge along the
/// grid it is exact; for any other it is symmetric, so that nothing is shifted.
inline float coverage(double distance)
{
    return static_cast<float>(std::clamp(0.5 + distance, 0.0, 1.0));
}

/// `part` 0 is a, 1 is b.
inline float mix(float a, float b, float part)
{
    return a + (b - a) * part;
}

/// Unit vector of a direction in degrees, counter-clockwise as seen on the screen.
inline cv::Point2d direction(double degrees)
{
    return {std::cos(degrees * CV_PI / 180), -std::sin(degrees * CV_PI / 180)};
}

/// The pixels of `image` within `radius` of a point, with a margin for soft edges; may be empty.
inline cv::Rect around(const cv::Mat& image, cv::Point2d center, double radius)
{
    const int reach = static_cast<int>(std::ceil(radius)) + 3;
    return cv::Rect(cvRound(center.x) - reach, cvRound(center.y) - reach, 2 * reach + 1, 2 * reach + 1) &
           cv::Rect(0, 0, image.cols, image.rows);
}

/// Calls paint(pixel, dx, dy) for the pixels within `radius` of a point, (dx, dy) being seen from it.
template <typename Paint>
void paintAround(cv::Mat& image, cv::Point2d center, double radius, Paint paint)
{
    const cv::Rect box = around(image, center, radius);
    for (int y = box.y; y < box.y + box.height; ++y) {
        auto* row = image.ptr<float>(y);
        for (int x = box.x; x < box.x + box.width; ++x)
            paint(row[x], x - center.x, y - center.y);
    }
}

/// A tile of smooth random texture that repeats without a seam; the same for every wheel, which begins to read it
/// elsewhere.
class Texture
{
public:
    static constexpr int size = 512;

    explicit Texture(std::uint64_t seed);

    /// About -3 to 3, standard deviation 1, changing over a few pixels.
    float at(int x, int y) const { return m_tile.ptr<float>((y + m_y) & (size - 1))[(x + m_x) & (size - 1)]; }

private:
    cv::Mat m_tile;
    int m_x = 0;
    int m_y = 0;
};

} // namespace wheel
