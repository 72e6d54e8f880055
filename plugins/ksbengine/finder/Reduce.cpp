#include "Reduce.h"

#include <algorithm>

namespace finder {

namespace {

// More rows than these add nothing but memory traffic: a block then already averages away the camera's noise.
constexpr int rowsPerBlock = 8;

void addRow(const uchar* row, uint16_t* sums, int width)
{
    for (int x = 0; x < width; ++x)
        sums[x] = static_cast<uint16_t>(sums[x] + row[x]);
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
        uchar* out = m_small.ptr(y);
        const uint16_t* column = m_columns.data();
        for (int x = 0; x < m_small.cols; ++x, column += factor) {
            int sum = area / 2;
            for (int i = 0; i < factor; ++i)
                sum += column[i];
            out[x] = static_cast<uchar>(sum / area);
        }
    }
    return m_small;
}

} // namespace finder
