#include "ImageFolder.h"

#include <QDir>
#include <QImageReader>

#include <algorithm>

namespace {

/// Gray bitmaps are stored with a palette; the engine and the viewers expect the gray values themselves.
QImage withoutPalette(QImage image)
{
    const bool paletted = image.format() == QImage::Format_Indexed8 || image.format() == QImage::Format_Mono ||
                          image.format() == QImage::Format_MonoLSB;
    if (!paletted)
        return image;
    return std::move(image).convertToFormat(image.allGray() ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
}

} // namespace

ImageFolder::ImageFolder(QString path)
    : m_path(std::move(path))
{
}

/// Lists the folder once at most, so that one without a single good image ends the search.
ImageFolder::Shot ImageFolder::next()
{
    Shot shot;
    bool listed = false;
    while (shot.image.isNull() && !(m_rest.isEmpty() && listed)) {
        if (m_rest.isEmpty()) {
            m_rest = list();
            listed = true;
            continue;
        }
        const QString file = m_rest.takeFirst();
        QString reason;
        shot.image = read(file, &reason);
        if (shot.image.isNull())
            shot.skipped << QStringLiteral("%1: %2").arg(file, reason);
    }
    return shot;
}

QStringList ImageFolder::list() const
{
    static const QStringList kinds{QStringLiteral("*.bmp"),  QStringLiteral("*.png"), QStringLiteral("*.jpg"),
                                   QStringLiteral("*.jpeg"), QStringLiteral("*.pgm"), QStringLiteral("*.ppm"),
                                   QStringLiteral("*.tif"),  QStringLiteral("*.tiff")};
    // An empty path would mean the working directory to QDir.
    QStringList files = m_path.isEmpty() ? QStringList() : QDir(m_path).entryList(kinds, QDir::Files, QDir::Unsorted);
    std::sort(files.begin(), files.end());
    return files;
}

QImage ImageFolder::read(const QString& file, QString* error) const
{
    QImageReader reader(QDir(m_path).filePath(file));
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > maxPixels) {
        *error = QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
        return {};
    }
    const QImage image = reader.read();
    if (image.isNull())
        *error = reader.errorString();
    return withoutPalette(image);
}
