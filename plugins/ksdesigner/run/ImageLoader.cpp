#include "ImageLoader.h"

#include <QFileInfo>
#include <QImageReader>

ImageLoader::ImageLoader(QObject* parent)
    : QObject(parent)
    , m_mailbox(this)
{
    m_pool.setMaxThreadCount(1);
}

ImageLoader::~ImageLoader()
{
    m_mailbox.close();
    m_pool.clear();
    m_pool.waitForDone();
}

void ImageLoader::load(const QString& path)
{
    m_pool.start([this, mailbox = m_mailbox, path] {
        QString error;
        const QImage image = read(path, &error);
        mailbox.post([this, path, image, error] {
            if (image.isNull())
                emit failed(path, error);
            else
                emit loaded(path, image);
        });
    });
}

QImage ImageLoader::read(const QString& path, QString* error)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    const QString file = QFileInfo(path).fileName();
    // Asked before decoding: a damaged header must not make the program reserve gigabytes.
    if (qint64(size.width()) * size.height() > maxPixels) {
        *error = tr("%1：图像过大（%2 × %3）").arg(file).arg(size.width()).arg(size.height());
        return {};
    }
    const QImage image = reader.read();
    if (image.isNull())
        *error = tr("%1：%2").arg(file, reader.errorString());
    return image;
}

QStringList ImageLoader::patterns()
{
    QStringList patterns;
    for (const QByteArray& format : QImageReader::supportedImageFormats())
        patterns.append(QStringLiteral("*.") + QString::fromLatin1(format));
    return patterns;
}
