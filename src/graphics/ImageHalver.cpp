#include "graphics/ImageHalver.h"

namespace {

/// `channels` bytes a pixel; `pairs` pixels of the source in each row become one.
template <int channels>
void halveRow(const uchar* upper, const uchar* lower, uchar* out, int pairs)
{
    for (int x = 0; x < pairs; ++x) {
        for (int c = 0; c < channels; ++c) {
            const int i = 2 * channels * x + c;
            out[channels * x + c] =
                static_cast<uchar>((upper[i] + upper[i + channels] + lower[i] + lower[i + channels] + 2) >> 2);
        }
    }
}

/// The last column of an image of odd width has no neighbour.
void halveLast(const uchar* upper, const uchar* lower, uchar* out, int channels)
{
    for (int c = 0; c < channels; ++c)
        out[c] = static_cast<uchar>((upper[c] + lower[c] + 1) >> 1);
}

template <int channels>
void halve(const QImage& image, QImage& half)
{
    const int pairs = image.width() / 2;
    for (int y = 0; y < half.height(); ++y) {
        const uchar* upper = image.constScanLine(2 * y);
        const uchar* lower = image.constScanLine(std::min(2 * y + 1, image.height() - 1));
        uchar* out = half.scanLine(y);
        halveRow<channels>(upper, lower, out, pairs);
        if (pairs < half.width())
            halveLast(upper + 2 * channels * pairs, lower + 2 * channels * pairs, out + channels * pairs, channels);
    }
}

} // namespace

QImage halved(const QImage& image)
{
    QImage half((image.width() + 1) / 2, (image.height() + 1) / 2, image.format());
    if (image.depth() == 8)
        halve<1>(image, half);
    else
        halve<4>(image, half);
    return half;
}
