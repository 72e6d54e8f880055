#pragma once

#include <opencv2/core.hpp>

#include <cstdint>
#include <vector>

namespace finder {

/// Makes a small picture of a large one by averaging. Keeps its buffers; one instance per thread.
class Reducer
{
public:
    /// Averages blocks of `factor` x `factor` pixels (of large blocks, evenly spaced rows). A remainder at the right
    /// and lower edge is left out. The result stays valid until the next call.
    const cv::Mat& reduce(const cv::Mat& gray, int factor);

    /// The factor that brings the shorter side to 256 to 511 pixels; 1 for smaller pictures.
    static int factorFor(const cv::Mat& gray);

    /// Where a point of the small picture lies in the large one.
    static double toLarge(double coordinate, int factor) { return (coordinate + 0.5) * factor - 0.5; }
    static double toSmall(double coordinate, int factor) { return (coordinate + 0.5) / factor - 0.5; }

private:
    cv::Mat m_small;
    std::vector<uint16_t> m_columns;
};

} // namespace finder
