#include "GrayLevels.h"

#include <array>

namespace finder {

GrayLevels grayLevelsOf(const cv::Mat& gray)
{
    std::array<int, 256> histogram{};
    for (int y = 0; y < gray.rows; ++y) {
        const uchar* row = gray.ptr(y);
        for (int x = 0; x < gray.cols; ++x)
            ++histogram[row[x]];
    }
    const auto level = [&](double share) {
        auto left = static_cast<int>(share * static_cast<double>(gray.total()));
        int value = 0;
        while (value < 255 && left >= histogram[value])
            left -= histogram[value++];
        return static_cast<double>(value);
    };
    return {level(0.002), level(0.05), level(0.95)};
}

} // namespace finder
