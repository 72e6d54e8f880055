#include "dialogs/cameras/PictureMeasures.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace {

constexpr double maxPlaces = 1e6;
constexpr int fullLevel = 255;
constexpr quint16 fullLevel16 = 0xFFC0; // ten bits that were moved up end there
constexpr double darkest = 1;           // mean level below which there is nothing but noise

bool isFull(const QImage& image, int x, int y)
{
    if (image.format() == QImage::Format_Grayscale16)
        return reinterpret_cast<const quint16*>(image.constScanLine(y))[x] >= fullLevel16;
    const QRgb pixel = image.pixel(x, y);
    return std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)}) == fullLevel;
}

/// Squared Sobel gradient; `at` has all its neighbours.
int squaredGradient(const uchar* at, int stride)
{
    const uchar* above = at - stride;
    const uchar* below = at + stride;
    const int across = (above[1] + 2 * at[1] + below[1]) - (above[-1] + 2 * at[-1] + below[-1]);
    const int down = (below[-1] + 2 * below[0] + below[1]) - (above[-1] + 2 * above[0] + above[1]);
    return across * across + down * down;
}

} // namespace

PictureMeasures measurePicture(const QImage& image)
{
    PictureMeasures measures;
    const QImage gray = image.convertToFormat(QImage::Format_Grayscale8);
    const int step = std::max(1, int(std::ceil(std::sqrt(double(gray.width()) * gray.height() / maxPlaces))));
    double places = 0;
    double full = 0;
    double levels = 0;
    double gradients = 0;
    for (int y = 1; y < gray.height() - 1; y += step) {
        const uchar* line = gray.constScanLine(y);
        for (int x = 1; x < gray.width() - 1; x += step) {
            ++places;
            ++measures.histogram[line[x]];
            levels += line[x];
            full += isFull(image, x, y);
            gradients += squaredGradient(line + x, gray.bytesPerLine());
        }
    }
    if (places == 0)
        return measures;
    for (double& share : measures.histogram)
        share /= places;
    measures.overexposed = full / places;
    const double mean = levels / places;
    measures.focus = mean < darkest ? 0 : 1000 * gradients / places / (mean * mean);
    return measures;
}
