#include "Reduce.h"

#include "Vectorise.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace finder {

namespace {

// More rows than these add nothing but memory traffic: a block then already averages away the camera's noise.
constexpr int rowsPerBlock = 8;

using Rows = std::array<const uchar*, rowsPerBlock>;

VC_VECTORISED void sumRows(const Rows& rows, uint16_t* VC_RESTRICT sums, int width)
{
    const uchar *r0 = rows[0], *r1 = rows[1], *r2 = rows[2], *r3 = rows[3];
    const uchar *r4 = rows[4], *r5 = rows[5], *r6 = rows[6], *r7 = rows[7];
    for (int x = 0; x < width; ++x)
        sums[x] = static_cast<uint16_t>(r0[x] + r1[x] + r2[x] + r3[x] + r4[x] + r5[x] + r6[x] + r7[x]);
}

/// Four sums side by side, each at most 8 * 255.
uint64_t four(const uint16_t* sums)
{
    uint64_t value = 0;
    std::memcpy(&value, sums, sizeof value);
    return value;
}

/// Means of `factor` columns each; the usual factor is worth a way of its own.
void averageColumns(const uint16_t* columns, int factor, int count, uchar* out)
{
    const int area = rowsPerBlock * factor;
    if (factor == 8) {
        constexpr uint64_t ones = 0x0001000100010001; // times these the uppermost lane is the sum of all four
        for (int x = 0; x < count; ++x, columns += 8)
            out[x] = static_cast<uchar>((((four(columns) + four(columns + 4)) * ones >> 48) + 32) >> 6);
        return;
    }
    const auto share = static_cast<uint32_t>((1U << 20) / static_cast<uint32_t>(area));
    for (int x = 0; x < count; ++x, columns += factor) {
        uint32_t sum = static_cast<uint32_t>(area) / 2;
        for (int i = 0; i < factor; ++i)
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
    m_columns.resize(static_cast<size_t>(usedWidth));
    for (int y = 0; y < m_small.rows; ++y) {
        Rows rows{}; // a smaller block repeats some; its mean is nearly the same
        for (int i = 0; i < rowsPerBlock; ++i)
            rows[i] = gray.ptr(y * factor + (2 * i + 1) * factor / (2 * rowsPerBlock));
        sumRows(rows, m_columns.data(), usedWidth);
        averageColumns(m_columns.data(), factor, m_small.cols, m_small.ptr(y));
    }
    return m_small;
}

} // namespace finder
