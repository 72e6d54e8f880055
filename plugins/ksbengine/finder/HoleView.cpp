#include "HoleView.h"

#include "Pyramid.h"

#include <algorithm>
#include <cmath>

namespace finder {

void HoleView::sample(Pyramid& image, float* grays) const
{
    const double step = 2 * halfSide / side;
    const int k = image.levelForStep(step);
    const cv::Mat& level = image.level(k);
    const cv::Point2d middle = Pyramid::toLevel(center, k);
    const cv::Point2d right = step / Pyramid::scale(k) * along;
    const cv::Point2d down(-right.y, right.x);
    const auto mostX = static_cast<float>(level.cols - 1);
    const auto mostY = static_cast<float>(level.rows - 1);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const cv::Point2d at = middle + (column + 0.5 - side / 2.0) * right + (row + 0.5 - side / 2.0) * down;
            const float x = std::clamp(static_cast<float>(at.x), 0.0F, mostX);
            const float y = std::clamp(static_cast<float>(at.y), 0.0F, mostY);
            const int left = std::min(static_cast<int>(x), level.cols - 2);
            const int top = std::min(static_cast<int>(y), level.rows - 2);
            const float fx = x - static_cast<float>(left);
            const float fy = y - static_cast<float>(top);
            const uchar* p = level.ptr(top) + left;
            const uchar* q = level.ptr(top + 1) + left;
            const float upper = static_cast<float>(p[0]) + fx * static_cast<float>(p[1] - p[0]);
            const float lower = static_cast<float>(q[0]) + fx * static_cast<float>(q[1] - q[0]);
            *grays++ = upper + fy * (lower - upper);
        }
    }
}

void HoleView::sampleRoots(Pyramid& image, float* roots) const
{
    sample(image, roots);
    for (int i = 0; i < places; ++i)
        roots[i] = std::sqrt(roots[i]);
}

} // namespace finder
