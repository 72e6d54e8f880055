#pragma once

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace finder {

/// The gray value at a point between pixels, bilinear. The point must lie between the centres of the outermost pixels.
inline float grayAt(const cv::Mat& gray, float x, float y)
{
    const int column = std::min(static_cast<int>(x), gray.cols - 2);
    const int row = std::min(static_cast<int>(y), gray.rows - 2);
    const float fx = x - static_cast<float>(column);
    const float fy = y - static_cast<float>(row);
    const uchar* p = gray.ptr(row) + column;
    const uchar* q = p + gray.step[0];
    const float upper = static_cast<float>(p[0]) + fx * static_cast<float>(p[1] - p[0]);
    const float lower = static_cast<float>(q[0]) + fx * static_cast<float>(q[1] - q[0]);
    return upper + fy * (lower - upper);
}

/// Gray values along one ray.
struct Ray
{
    double angle = 0;
    double start = 0; ///< radius of the first value, pixels
    double step = 1;  ///< pixels between values
    std::vector<float> values;
};

/// Samples a ray of `count` values from `center`; false when a part of it lies outside of the image.
bool sampleRay(const cv::Mat& gray, const cv::Point2d& center, double angle, double start, double step, int count,
               Ray* ray);

/// As sampleRay(), each value the mean of `side` * 2 + 1 parallel rays, which averages noise along a smooth edge.
bool sampleWideRay(const cv::Mat& gray, const cv::Point2d& center, double angle, double start, double step, int count,
                   int side, Ray* ray);

/// One measured point of an outline, in polar form around the centre that the fit starts from.
struct EdgePoint
{
    double angle = 0;    ///< radians, image axes
    double radius = 0;   ///< pixels
    double strength = 0; ///< gray levels per pixel across the edge
    double residual = 0; ///< pixels from the fitted outline; set by the fit
    bool used = false;   ///< agrees with the outline; set by the fit
};

enum class EdgeKind { BrightOutside, DarkOutside, Either };

/// How the steepness along a ray is measured, in steps of the ray.
struct EdgeFilter
{
    int window = 2; ///< half width of the two means whose difference is the slope
    int apart = 0;  ///< above 0, the mean of the slopes this far on both sides is taken off: a blurred step stands out,
                    ///< and a surface that only bends away from the light does not
};

/// The strongest edge of a kind on the ray, to a fraction of a step; strength 0 when there is none.
EdgePoint strongestEdge(const Ray& ray, EdgeKind kind, const EdgeFilter& filter);

/// Appends every edge of the ray that stands out from its noise.
void appendEdges(const Ray& ray, EdgeKind kind, const EdgeFilter& filter, std::vector<EdgePoint>* edges);

} // namespace finder
