#pragma once

#include <opencv2/core.hpp>

#include <vector>

namespace finder {

/// An image in halving resolutions: level 0 is the image itself, a pixel of level k the rounded mean of 2 x 2 pixels of
/// level k - 1; an odd last row or column is left out. Levels are computed when they are first asked for. Keeps its
/// buffers from image to image; one instance per thread.
///
/// Coordinates are pixels of a level with the middle of its top-left pixel at (0, 0).
class Pyramid
{
public:
    /// Takes an 8-bit image of one channel and any stride, whose pixels must outlive the use of the levels.
    void build(const cv::Mat& gray);

    /// How many levels there are: the smallest still has a pixel. 0 before build() and for an empty image.
    int levels() const { return m_count; }

    /// 0 <= k < levels(). Valid until the next build().
    const cv::Mat& level(int k);

    /// The coarsest level whose shorter side still has `least` pixels; 0 where the image itself has fewer.
    static int levelOfSide(const cv::Size& image, int least);

    /// The level whose pixels are about as large as `step` pixels of the image: by less than a half larger or smaller.
    int levelForStep(double step) const;

    /// A coordinate of level 0 in pixels of level k, and back.
    static double toLevel(double coordinate, int k) { return (coordinate + 0.5) / scale(k) - 0.5; }
    static double fromLevel(double coordinate, int k) { return (coordinate + 0.5) * scale(k) - 0.5; }
    static cv::Point2d toLevel(const cv::Point2d& p, int k) { return {toLevel(p.x, k), toLevel(p.y, k)}; }
    static cv::Point2d fromLevel(const cv::Point2d& p, int k) { return {fromLevel(p.x, k), fromLevel(p.y, k)}; }

    /// Pixels of level 0 along the side of a pixel of level k.
    static double scale(int k) { return static_cast<double>(1 << k); }

private:
    std::vector<cv::Mat> m_levels; // buffers; those of an earlier image from m_ready on
    int m_count = 0;
    int m_ready = 0; // levels that hold the image
};

/// Gray values below which a small share of a picture lies.
struct GrayLevels
{
    double black;  ///< 0.2 %
    double dark;   ///< 5 %
    double bright; ///< 95 %
};

GrayLevels grayLevelsOf(const cv::Mat& gray);

} // namespace finder
