#include "ImageFolder.h"

#include "common/ImageFile.h"

#include <QDir>

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
        const ImageFile file = ImageFile::read(QDir(m_path).filePath(m_rest.takeFirst()));
        shot.image = withoutPalette(file.image);
        if (shot.image.isNull())
            shot.skipped << file.problem();
    }
    return shot;
}

QStringList ImageFolder::list() const
{
    // An empty path would mean the working directory to QDir.
    QStringList files =
        m_path.isEmpty() ? QStringList() : QDir(m_path).entryList(ImageFile::patterns(), QDir::Files, QDir::Unsorted);
    std::sort(files.begin(), files.end());
    return files;
}
