#pragma once

#include <opencv2/core.hpp>

#include <vector>

namespace finder {

/// Axes along and across the direction from the hub, through a point near the hole's centre.
struct MouthFrame
{
    cv::Point2d origin;
    double c = 1; ///< cosine and sine of that direction
    double s = 0;

    cv::Point2d inside(const cv::Point2d& place) const
    {
        const cv::Point2d d = place - origin;
        return {d.x * c + d.y * s, d.y * c - d.x * s};
    }
    cv::Point2d turned(const cv::Point2d& p) const { return {p.x * c - p.y * s, p.x * s + p.y * c}; }
    cv::Point2d outside(const cv::Point2d& p) const { return origin + turned(p); }
};

/// A gray value with its place in the frame.
struct MouthPixel
{
    float x, y, gray;
};

/// A square of pixels of which some count; the neighbours of each that counts are in the square too.
struct MouthPatch
{
    int width = 0;
    int bin = 1; ///< pixels of the image, a side, that are averaged to one
    std::vector<MouthPixel> pixels;
    std::vector<int> counting; ///< indices into pixels
};

/// The pixels around `center`, `bin` x `bin` of them averaged to one; those within `reach` and the
/// image count.
MouthPatch patchAround(const cv::Mat& gray, const cv::Point2d& center, double reach, int bin, const MouthFrame& frame);

/// The gray value that a share of the counting pixels lies below, of those between two distances from the frame's
/// origin; 0 where there is none.
double percentile(const MouthPatch& patch, double from, double to, double share);

} // namespace finder
