#pragma once

#include <QImage>

#include <opencv2/core.hpp>

namespace finder {

/// An image as the finder takes it: 8-bit gray. `gray` may point into `source`, so the two stay together.
struct GrayImage
{
    QImage source;
    cv::Mat gray; ///< empty for a null image
};

/// Any QImage as 8-bit gray, without a copy where the pixels are 8-bit gray already. 16-bit gray is shifted by as many
/// bits as its brightest pixel needs, so that cameras of 10, 12 and 14 bits come out right. Transparency is ignored.
GrayImage toGray(const QImage& image);

/// A copy of a matrix as an image: 8- and 16-bit gray, 8-bit BGR and BGRA. For any other type it writes the warning
/// "ERROR: Mat could not be converted to QImage." and returns a null image.
QImage toImage(const cv::Mat& matrix);

} // namespace finder
