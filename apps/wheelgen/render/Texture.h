#pragma once

#include <opencv2/core.hpp>

#include <cstdint>

namespace wheel {

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
