#include "graphics/WideSampler.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>

// In front of a function that is only called when isSupported(), and may use 256-bit integer vectors.
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define VALVECELL_AVX2 __attribute__((target("avx2")))
#elif defined(_M_X64)
#define VALVECELL_AVX2
#endif

#ifdef VALVECELL_AVX2

#include <immintrin.h>

namespace {

constexpr std::size_t colorGroup = 4; ///< columns at once
constexpr std::size_t grayGroup = 8;
const int opaque = static_cast<int>(0xff000000u);

/// Two pixels, each with its right neighbour, sixteen channels of 16 bits.
VALVECELL_AVX2 inline __m256i neighbours(const unsigned char* row, int first, int second)
{
    const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + 4 * first));
    const __m128i high = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + 4 * second));
    return _mm256_cvtepu8_epi16(_mm_unpacklo_epi64(low, high));
}

/// From products with weights of 256 in all to the weighted sum, rounded.
VALVECELL_AVX2 inline __m256i blended(__m256i one, __m256i other)
{
    return _mm256_srli_epi16(_mm256_add_epi16(_mm256_add_epi16(one, other), _mm256_set1_epi16(128)), 8);
}

/// Four opaque pixels. The first and third are neighbours in a vector, as the second and fourth are, so that the
/// halves come together in order.
VALVECELL_AVX2 inline __m128i sampled(const RowPair& rows, const int* indices, const std::uint16_t* weights)
{
    const __m256i rest = _mm256_set1_epi16(static_cast<short>(256 - rows.weight));
    const __m256i share = _mm256_set1_epi16(static_cast<short>(rows.weight));
    __m256i weighted[2];
    for (int i = 0; i < 2; ++i) {
        const __m256i above = _mm256_mullo_epi16(neighbours(rows.upper, indices[i], indices[i + 2]), rest);
        const __m256i below = _mm256_mullo_epi16(neighbours(rows.lower, indices[i], indices[i + 2]), share);
        const auto* columns = reinterpret_cast<const __m256i*>(weights + 16 * i);
        weighted[i] = _mm256_mullo_epi16(blended(above, below), _mm256_loadu_si256(columns));
    }
    const __m256i left = _mm256_unpacklo_epi64(weighted[0], weighted[1]);
    const __m256i right = _mm256_unpackhi_epi64(weighted[0], weighted[1]);
    const __m256i pixels = blended(left, right);
    const __m128i bytes = _mm_packus_epi16(_mm256_castsi256_si128(pixels), _mm256_extracti128_si256(pixels, 1));
    return _mm_or_si128(bytes, _mm_set1_epi32(opaque));
}

/// Eight opaque pixels.
VALVECELL_AVX2 inline __m256i sampled(const std::uint16_t* row, const int* indices, const std::uint16_t* weights)
{
    const __m256i columns = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(indices));
    const __m256i pairs = _mm256_i32gather_epi32(reinterpret_cast<const int*>(row), columns, sizeof *row);
    const __m256i sums = _mm256_madd_epi16(pairs, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(weights)));
    const __m256i grays = _mm256_srli_epi32(_mm256_add_epi32(sums, _mm256_set1_epi32(128)), 8);
    return _mm256_or_si256(_mm256_mullo_epi32(grays, _mm256_set1_epi32(0x010101)), _mm256_set1_epi32(opaque));
}

VALVECELL_AVX2 void colorRow(const RowPair& rows, const RowPair& next, const int* indices, const std::uint16_t* weights,
                             std::size_t count, QRgb* line)
{
    for (std::size_t i = 0; i < count; i += colorGroup) {
        for (const unsigned char* row : {next.upper, next.lower})
            _mm_prefetch(reinterpret_cast<const char*>(row + 4 * indices[i]), _MM_HINT_T0);
        const __m128i pixels = sampled(rows, indices + i, weights + 8 * i);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(line + i), pixels);
    }
}

VALVECELL_AVX2 void grayRow(const std::uint16_t* row, const int* indices, const std::uint16_t* weights,
                            std::size_t count, QRgb* line)
{
    for (std::size_t i = 0; i < count; i += grayGroup)
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(line + i), sampled(row, indices + i, weights + 2 * i));
}

/// Whole groups go to the line itself, the rest by way of a group of its own.
template <typename Render>
void inGroups(std::size_t group, std::size_t count, QRgb* line, const Render& render)
{
    const std::size_t whole = count / group * group;
    render(0, whole, line);
    if (whole == count)
        return;
    std::array<QRgb, grayGroup> last{};
    render(whole, group, last.data());
    std::copy_n(last.data(), count - whole, line + whole);
}

} // namespace

bool WideSampler::isSupported()
{
    static const bool supported = cv::checkHardwareSupport(CV_CPU_AVX2);
    return supported;
}

WideSampler::WideSampler(const std::vector<Sample>& columns, Source source)
    : m_count(columns.size())
{
    std::vector<Sample> padded = columns;
    padded.resize((m_count + grayGroup - 1) / grayGroup * grayGroup, columns.back());
    for (const Sample& column : padded)
        m_indices.push_back(column.index);
    // as they stand in the vectors
    constexpr std::array<std::size_t, colorGroup> inOrder{0, 1, 2, 3};
    constexpr std::array<std::size_t, colorGroup> crosswise{0, 2, 1, 3};
    const std::size_t channels = source == Colors ? 4 : 1;
    for (std::size_t i = 0; i < padded.size(); i += colorGroup) {
        for (const std::size_t k : source == Colors ? crosswise : inOrder) {
            const auto weight = static_cast<std::uint16_t>(padded[i + k].weight);
            m_weights.insert(m_weights.end(), channels, static_cast<std::uint16_t>(256 - weight));
            m_weights.insert(m_weights.end(), channels, weight);
        }
    }
}

void WideSampler::sampleColors(const RowPair& rows, const RowPair& next, QRgb* line) const
{
    inGroups(colorGroup, m_count, line, [&](std::size_t from, std::size_t count, QRgb* out) {
        colorRow(rows, next, &m_indices[from], &m_weights[8 * from], count, out);
    });
}

void WideSampler::sampleGrays(const std::uint16_t* row, QRgb* line) const
{
    inGroups(grayGroup, m_count, line, [&](std::size_t from, std::size_t count, QRgb* out) {
        grayRow(row, &m_indices[from], &m_weights[2 * from], count, out);
    });
}

#else

bool WideSampler::isSupported()
{
    return false;
}

WideSampler::WideSampler(const std::vector<Sample>& columns, Source)
    : m_count(columns.size())
{
}

void WideSampler::sampleColors(const RowPair&, const RowPair&, QRgb*) const {}

void WideSampler::sampleGrays(const std::uint16_t*, QRgb*) const {}

#endif
