#pragma once

#include <QRgb>

#include <cstdint>
#include <vector>

/// Where a row or column of a scaled image lies between two of the source: `index` and `next`, by `weight` / 256.
struct Sample
{
    int index;
    int next;
    int weight;
};

/// Two rows of a source, and how much the lower one weighs: `weight` / 256.
struct RowPair
{
    const unsigned char* upper;
    const unsigned char* lower;
    int weight;
};

/// Samples rows of an image bilinearly with wide vectors, several times as fast as pixel by pixel. Any number of
/// threads may sample with one.
class WideSampler
{
public:
    /// Whether the processor can.
    static bool isSupported();

    enum Source { Grays, Colors };

    /// For a result of these columns, one at least, each between two columns of the source.
    WideSampler(const std::vector<Sample>& columns, Source source);

    /// One row of the result from two of 32-bit colours; opaque. Those of the next row are brought into the
    /// cache meanwhile.
    void sampleColors(const RowPair& rows, const RowPair& next, QRgb* line) const;

    /// One row of the result from a row of grays; opaque.
    void sampleGrays(const std::uint16_t* row, QRgb* line) const;

private:
    const std::size_t m_count;
    // Of the columns, and of the last one again up to whole vectors:
    std::vector<int> m_indices;
    std::vector<std::uint16_t> m_weights; ///< of each all channels of the left pixel, then of the right one
};
