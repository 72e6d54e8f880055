#pragma once

#include <array>

class QImage;

/// What a picture says of light and focus.
struct PictureMeasures
{
    std::array<double, 256> histogram{}; ///< share of the pixels at each level, 16 bits by their upper 8
    double overexposed = 0;              ///< share of the pixels with a channel at its end
    /// Mean squared Sobel gradient over the squared mean level, in 1/1000: the Tenengrad criterion (Krotkov,
    /// "Focusing", International Journal of Computer Vision 1, 1987), normalised so that light and exposure have hardly
    /// any say. The sharper of two pictures of one scene has the higher one.
    double focus = 0;
};

/// Measures at up to about a million places that are spread evenly, each with its true neighbours. Any thread.
PictureMeasures measurePicture(const QImage& image);
