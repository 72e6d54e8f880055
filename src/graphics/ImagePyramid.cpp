#include "graphics/ImagePyramid.h"

#include <QThreadPool>
#include <QtConcurrentRun>

#include <opencv2/imgproc.hpp>

#include <cmath>

namespace {

/// When no new image has come for so long, the present one is none of a live picture.
constexpr int quietMs = 60;

QThreadPool& pool()
{
    static QThreadPool oneThread;
    oneThread.setMaxThreadCount(1);
    return oneThread;
}

/// Shares the pixels, and takes them for its own: an image that others share is only read.
cv::Mat matOf(const QImage& image)
{
    return {image.height(), image.width(), CV_8UC(image.depth() / 8), const_cast<uchar*>(image.constBits()),
            static_cast<std::size_t>(image.bytesPerLine())};
}

/// Rounded up: each pixel is the mean of four, of which the last row or column of an odd size counts twice.
QImage halved(const QImage& image)
{
    QImage half((image.width() + 1) / 2, (image.height() + 1) / 2, image.format());
    cv::Mat whole = matOf(image);
    if (image.size() != 2 * half.size())
        cv::copyMakeBorder(whole, whole, 0, image.height() % 2, 0, image.width() % 2, cv::BORDER_REPLICATE);
    cv::Mat out = matOf(half);
    cv::resize(whole, out, out.size(), 0, 0, cv::INTER_AREA);
    return half;
}

QVector<QImage> buildLevels(const QImage& image)
{
    QVector<QImage> images{image};
    while (images.size() < ImagePyramid::levels)
        images.append(halved(images.constLast()));
    return images;
}

} // namespace

ImagePyramid::ImagePyramid(QObject* parent)
    : QObject(parent)
    , m_images{QImage()}
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(quietMs);
    connect(&m_pause, &QTimer::timeout, this, &ImagePyramid::build);
    connect(&m_builder, &QFutureWatcherBase::finished, this, &ImagePyramid::onBuilt);
}

void ImagePyramid::setImage(const QImage& image)
{
    m_images = {image};
    m_pause.stop();
}

int ImagePyramid::levelFor(double scale)
{
    const int wanted = scale >= 1.0 ? 0 : std::min(levels - 1, static_cast<int>(std::log2(1.0 / scale)));
    if (wanted >= m_images.size() && !m_pause.isActive() && !m_builder.isRunning())
        m_pause.start();
    return std::min(wanted, m_images.size() - 1);
}

void ImagePyramid::build()
{
    m_builder.setFuture(QtConcurrent::run(&pool(), buildLevels, m_images.constFirst()));
}

void ImagePyramid::onBuilt()
{
    const QVector<QImage> built = m_builder.result();
    if (built.constFirst().cacheKey() == m_images.constFirst().cacheKey())
        m_images = built;
    emit refined(); // of an image that is gone: whoever draws the new one asks again
}
