#include "common/ImageFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QSaveFile>

namespace {

/// TIFF is read by a plug-in of Qt that is installed by itself.
bool lacksPlugin(const QString& path)
{
    QFile file(path);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(4) : QByteArray();
    const bool tiff = head == QByteArray("II*\0", 4) || head == QByteArray("MM\0*", 4);
    return tiff && !QImageReader::supportedImageFormats().contains("tiff");
}

} // namespace

ImageFile ImageFile::read(const QString& path)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > maxPixels)
        return {path, {}, tr("图像过大（%1 × %2）").arg(size.width()).arg(size.height())};
    const QImage image = reader.read();
    if (image.isNull() && lacksPlugin(path))
        return {path, {}, tr("本机没有读取 TIFF 的插件，请安装 qt5-image-formats-plugins，或把图像存为 PNG")};
    return {path, image, image.isNull() ? reader.errorString() : QString()};
}

QImage ImageFile::readScaled(const QString& path, const QSize& box)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > maxPixels)
        return {};
    if (size.isValid())
        reader.setScaledSize(size.scaled(box, Qt::KeepAspectRatio));
    return reader.read();
}

QString ImageFile::problem() const
{
    return reason.isEmpty() ? QString() : tr("%1：%2").arg(QFileInfo(path).fileName(), reason);
}

QStringList ImageFile::patterns()
{
    static const QList<QByteArray> wanted{"bmp", "jpg", "jpeg", "png", "tif", "tiff", "pgm", "ppm", "webp"};
    QStringList patterns;
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

bool ImageFile::write(const QImage& image, const QString& path, const QByteArray& format, QString* error)
{
    const QFileInfo info(path);
    QDir().mkpath(info.path());
    QSaveFile file(path);
    QImageWriter writer(&file, format.isEmpty() ? info.suffix().toLatin1() : format);
    if (file.open(QIODevice::WriteOnly) && writer.write(image) && file.commit())
        return true;
    const QString reason = file.error() == QFileDevice::NoError ? writer.errorString() : file.errorString();
    *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), reason);
    return false;
}
