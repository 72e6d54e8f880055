#pragma once

#include <opencv2/core.hpp>

#include <cmath>
#include <vector>

namespace finder {

/// The gray value at a point between pixels, bilinear. The point must satisfy inside().
inline float grayAt(const cv::Mat& gray, float x, float y)
{
    const int column = static_cast<int>(x);
    const int row = static_cast<int>(y);
    const float fx = x - static_cast<float>(column);
    const float fy = y - static_cast<float>(row);
    const uchar* p = gray.ptr(row) + column;
    const uchar* q = p + gray.step[0];
    const float upper = static_cast<float>(p[0]) + fx * static_cast<float>(p[1] - p[0]);
    const float lower = static_cast<float>(q[0]) + fx * static_cast<float>(q[1] - q[0]);
    return upper + fy * (lower - upper);
}

inline bool inside(const cv::Mat& gray, double x, double y)
{
    return x >= 0 && y >= 0 && x < gray.cols - 1 && y < gray.rows - 1;
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

} // namespace finder
