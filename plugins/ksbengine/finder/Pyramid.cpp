#include "Pyramid.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace finder {

int Pyramid::levelOfSide(const cv::Size& image, int least)
{
    int k = 0;
    while ((std::min(image.width, image.height) >> (k + 1)) >= std::max(1, least))
        ++k;
    return k;
}

void Pyramid::build(const cv::Mat& gray)
{
    CV_Assert(gray.empty() || gray.type() == CV_8UC1);
    m_count = gray.empty() ? 0 : levelOfSide(gray.size(), 1) + 1;
    m_ready = std::min(m_count, 1);
    m_levels.resize(std::max(m_levels.size(), static_cast<size_t>(std::max(m_count, 1))));
    m_levels[0] = gray;
}

const cv::Mat& Pyramid::level(int k)
{
    CV_Assert(k >= 0 && k < m_count);
    for (; m_ready <= k; ++m_ready) {
        const cv::Mat& finer = m_levels[static_cast<size_t>(m_ready) - 1];
        const cv::Size half(finer.cols / 2, finer.rows / 2);
        // An exact half takes OpenCV's vectorised way of averaging 2 x 2 pixels.
        cv::resize(finer(cv::Rect(0, 0, 2 * half.width, 2 * half.height)), m_levels[static_cast<size_t>(m_ready)], half,
                   0, 0, cv::INTER_AREA);
    }
    return m_levels[static_cast<size_t>(k)];
}

int Pyramid::levelForStep(double step) const
{
    // Of levels of a single row or column no pixels can be interpolated.
    int last = 0;
    while (last + 1 < m_count && (std::min(m_levels[0].cols, m_levels[0].rows) >> (last + 1)) >= 2)
        ++last;
    return std::clamp(cvRound(std::log2(std::max(step, 1e-6))), 0, last);
}

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
