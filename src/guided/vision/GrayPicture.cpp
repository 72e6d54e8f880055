#include "guided/vision/GrayPicture.h"

cv::Mat grayPicture(const QImage& image)
{
    const QImage gray = image.convertToFormat(QImage::Format_Grayscale8);
    if (gray.isNull())
        return {};
    return cv::Mat(gray.height(), gray.width(), CV_8UC1, const_cast<uchar*>(gray.constBits()), gray.bytesPerLine())
        .clone();
}
