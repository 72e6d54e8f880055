#include "ImageFile.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QImageReader>

ImageFile ImageFile::read(const QString& path)
{
    QImageReader reader(path);
    // A wrong suffix is common in archives: the content tells what it is.
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    const QString name = QFileInfo(path).fileName();
    // Asked before decoding: a damaged header must not make the program reserve gigabytes.
    if (qint64(size.width()) * size.height() > maxPixels)
        return {path, {}, tr("%1：图像过大（%2 × %3）").arg(name).arg(size.width()).arg(size.height())};
    const QImage image = reader.read();
    return {path, image, image.isNull() ? tr("%1：%2").arg(name, reader.errorString()) : QString()};
}

QStringList ImageFile::patterns()
{
    QStringList patterns;
    // Not all that could be read: drawings and icons are no camera images.
    static const QList<QByteArray> wanted{"bmp", "jpg", "jpeg", "png", "tif", "tiff", "pgm", "ppm", "webp"};
    const QList<QByteArray> readable = QImageReader::supportedImageFormats();
    for (const QByteArray& format : readable) {
        if (wanted.contains(format))
            patterns.append(QStringLiteral("*.") + QString::fromLatin1(format));
    }
    return patterns;
}

QStringList ImageFile::below(const QString& folder)
{
    QStringList files;
    QDirIterator walk(folder, patterns(), QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files.append(walk.next());
    files.sort();
    return files;
}
