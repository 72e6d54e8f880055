#include "Paint.h"

#include "Random.h"

#include <opencv2/imgproc.hpp>

namespace wheel {

namespace {

/// White noise blurred with the tile's far side as its neighbour, brought to standard deviation 1.
cv::Mat octave(std::uint64_t stream, double sigma)
{
    cv::Mat tile(Texture::size, Texture::size, CV_32F);
    Random random(1, stream);
    for (auto it = tile.begin<float>(); it != tile.end<float>(); ++it)
        *it = static_cast<float>(random.range(-1, 1));
    const int margin = 64;
    cv::Mat wide;
    cv::copyMakeBorder(tile, wide, margin, margin, margin, margin, cv::BORDER_WRAP);
    cv::GaussianBlur(wide, wide, cv::Size(), sigma);
    cv::Mat result = wide(cv::Rect(margin, margin, Texture::size, Texture::size)).clone();
    cv::Scalar mean, deviation;
    cv::meanStdDev(result, mean, deviation);
    return (result - mean[0]) / deviation[0];
}

cv::Mat makeTile()
{
    cv::Mat tile = 0.75 * octave(1, 1.1) + 0.45 * octave(2, 4) + 0.45 * octave(3, 14);
    return tile;
}

} // namespace

Texture::Texture(std::uint64_t seed)
{
    static const cv::Mat shared = makeTile();
    Random random(seed, 12);
    m_tile = shared;
    m_x = random.integer(0, size - 1);
    m_y = random.integer(0, size - 1);
}

} // namespace wheel
