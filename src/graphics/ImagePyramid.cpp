#include "graphics/ImagePyramid.h"

#include "graphics/ImageHalver.h"

#include <QThreadPool>
#include <QtConcurrentRun>

#include <cmath>

namespace {

/// When no new image has come for so long, the present one is none of a live picture.
constexpr int kQuietMs = 60;

QThreadPool& pool()
{
    static QThreadPool oneThread;
    oneThread.setMaxThreadCount(1);
    return oneThread;
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
    m_pause.setInterval(kQuietMs);
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
