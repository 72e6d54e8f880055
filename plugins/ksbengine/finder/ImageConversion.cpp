#include "ImageConversion.h"

#include <QDebug>
#include <QVector>

#include <opencv2/imgproc.hpp>

namespace finder {

namespace {

cv::Mat wrap(const QImage& image, int type)
{
    // The matrix is only read; OpenCV has no view of constant pixels.
    return {image.height(), image.width(), type, const_cast<uchar*>(image.constBits()),
            static_cast<size_t>(image.bytesPerLine())};
}

cv::Mat colourToGray(const QImage& image, int type, int conversion)
{
    cv::Mat gray;
    cv::cvtColor(wrap(image, type), gray, conversion);
    return gray;
}

cv::Mat indexedToGray(const QImage& image)
{
    cv::Mat table(1, 256, CV_8UC1, cv::Scalar(0));
    const QVector<QRgb> colours = image.colorTable();
    bool same = colours.size() == 256;
    for (int i = 0; i < std::min(256, colours.size()); ++i) {
        table.at<uchar>(i) = static_cast<uchar>(qGray(colours[i]));
        same = same && qGray(colours[i]) == i;
    }
    cv::Mat pixels = wrap(image, CV_8UC1);
    if (same)
        return pixels;
    cv::Mat gray;
    cv::LUT(pixels, table, gray);
    return gray;
}

cv::Mat deepToGray(const QImage& image)
{
    const cv::Mat deep = wrap(image, CV_16UC1);
    double brightest = 0;
    cv::minMaxLoc(deep, nullptr, &brightest);
    int bits = 8;
    while (bits < 16 && brightest >= (1 << bits))
        bits += 2;
    cv::Mat gray;
    deep.convertTo(gray, CV_8U, 1.0 / (1 << (bits - 8)));
    return gray;
}

QImage copyOf(const cv::Mat& matrix, QImage::Format format)
{
    return QImage(matrix.data, matrix.cols, matrix.rows, static_cast<int>(matrix.step[0]), format).copy();
}

} // namespace

GrayImage toGray(const QImage& image)
{
    if (image.isNull())
        return {};
    switch (image.format()) {
    case QImage::Format_Grayscale8:
        return {image, wrap(image, CV_8UC1)};
    case QImage::Format_Indexed8:
        return {image, indexedToGray(image)};
    case QImage::Format_Grayscale16:
        return {image, deepToGray(image)};
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
        return {image, colourToGray(image, CV_8UC4, cv::COLOR_BGRA2GRAY)};
    case QImage::Format_RGBX8888:
    case QImage::Format_RGBA8888:
        return {image, colourToGray(image, CV_8UC4, cv::COLOR_RGBA2GRAY)};
    case QImage::Format_RGB888:
        return {image, colourToGray(image, CV_8UC3, cv::COLOR_RGB2GRAY)};
    case QImage::Format_BGR888:
        return {image, colourToGray(image, CV_8UC3, cv::COLOR_BGR2GRAY)};
    default:
        break;
    }
    const QImage converted = image.convertToFormat(QImage::Format_Grayscale8);
    if (converted.isNull())
        return {};
    return {converted, wrap(converted, CV_8UC1)};
}

QImage toImage(const cv::Mat& matrix)
{
    switch (matrix.empty() || matrix.dims > 2 ? -1 : matrix.type()) {
    case CV_8UC1:
        return copyOf(matrix, QImage::Format_Grayscale8);
    case CV_16UC1:
        return copyOf(matrix, QImage::Format_Grayscale16);
    case CV_8UC3:
        return copyOf(matrix, QImage::Format_BGR888);
    case CV_8UC4:
        return copyOf(matrix, QImage::Format_ARGB32);
    default:
        qWarning("ERROR: Mat could not be converted to QImage.");
        return {};
    }
}

} // namespace finder
