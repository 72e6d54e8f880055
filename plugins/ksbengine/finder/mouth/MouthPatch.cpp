#include "MouthPatch.h"

#include "finder/Robust.h"

#include <algorithm>
#include <cmath>

namespace finder {

namespace {

/// What lies outside of the image is as its border.
float blockMean(const cv::Mat& gray, const cv::Point& corner, int bin)
{
    int sum = 0;
    for (int y = corner.y; y < corner.y + bin; ++y) {
        const uchar* line = gray.ptr(std::clamp(y, 0, gray.rows - 1));
        for (int x = corner.x; x < corner.x + bin; ++x)
            sum += line[std::clamp(x, 0, gray.cols - 1)];
    }
    return static_cast<float>(sum) / static_cast<float>(bin * bin);
}

} // namespace

MouthPatch patchAround(const cv::Mat& gray, const cv::Point2d& center, double reach, int bin, const MouthFrame& frame)
{
    MouthPatch patch;
    const int half = cvCeil(reach / bin) + 1;
    const double shift = 0.5 * (bin - 1);
    const cv::Rect whole({0, 0}, gray.size());
    const cv::Point nearest(cvRound(center.x - shift), cvRound(center.y - shift));
    patch.bin = bin;
    patch.width = 2 * half + 1;
    patch.pixels.reserve(static_cast<size_t>(patch.width) * patch.width);
    for (int row = -half; row <= half; ++row) {
        for (int column = -half; column <= half; ++column) {
            const cv::Point corner(nearest.x + column * bin, nearest.y + row * bin);
            const cv::Point2d place(corner.x + shift, corner.y + shift);
            const cv::Point2d offset = place - center;
            const bool seen = (cv::Rect(corner, cv::Size(bin, bin)) & whole).area() == bin * bin;
            if (seen && offset.dot(offset) <= reach * reach)
                patch.counting.push_back(static_cast<int>(patch.pixels.size()));
            const cv::Point2d inside = frame.inside(place);
            patch.pixels.push_back(
                {static_cast<float>(inside.x), static_cast<float>(inside.y), blockMean(gray, corner, bin)});
        }
    }
    return patch;
}

double percentile(const MouthPatch& patch, double from, double to, double share)
{
    std::vector<float> grays;
    for (const int index : patch.counting) {
        const MouthPixel& pixel = patch.pixels[index];
        const double distance = std::hypot(pixel.x, pixel.y);
        if (distance >= from && distance <= to)
            grays.push_back(pixel.gray);
    }
    return grays.empty() ? 0 : static_cast<double>(quantile(grays, share));
}

} // namespace finder
