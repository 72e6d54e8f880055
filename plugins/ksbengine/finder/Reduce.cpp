#include "Reduce.h"

#include "Vectorise.h"

#include <algorithm>

namespace finder {

namespace {

// More rows than these add nothing but memory traffic: a block then already averages away the camera's noise.
constexpr int rowsPerBlock = 8;

VC_VECTORISED void addRow(const uchar* row, uint16_t* VC_RESTRICT sums, int width)
{
    for (int x = 0; x < width; ++x)
        sums[x] = static_cast<uint16_t>(sums[x] + row[x]);
}

/// Means of `factor` columns each; the usual factors are worth a loop that the compiler can unroll.
template <int Fixed>
void averageColumns(const uint16_t* columns, int factor, int area, int count, uchar* out)
{
    const int width = Fixed > 0 ? Fixed : factor;
    const auto share = static_cast<uint32_t>((1U << 20) / static_cast<uint32_t>(area));
    for (int x = 0; x < count; ++x, columns += width) {
        uint32_t sum = static_cast<uint32_t>(area) / 2;
        for (int i = 0; i < width; ++i)
            sum += columns[i];
        out[x] = static_cast<uchar>(std::min<uint32_t>(255, (sum * share) >> 20));
    }
}

} // namespace

int Reducer::factorFor(const cv::Mat& gray)
{
    return std::max(1, std::min(gray.cols, gray.rows) / 256);
}

const cv::Mat& Reducer::reduce(const cv::Mat& gray, int factor)
{
    m_small.create(gray.rows / factor, gray.cols / factor, CV_8UC1);
    const int usedWidth = m_small.cols * factor;
    const int rows = std::min(factor, rowsPerBlock);
    const int area = rows * factor;
    for (int y = 0; y < m_small.rows; ++y) {
        m_columns.assign(static_cast<size_t>(usedWidth), 0);
        for (int i = 0; i < rows; ++i)
            addRow(gray.ptr(y * factor + (2 * i + 1) * factor / (2 * rows)), m_columns.data(), usedWidth);
        const auto average = factor == 8 ? averageColumns<8> : averageColumns<0>;
        average(m_columns.data(), factor, area, m_small.cols, m_small.ptr(y));
    }
    return m_small;
}

} // namespace finder
