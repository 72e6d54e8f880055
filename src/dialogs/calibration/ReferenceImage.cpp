#include "dialogs/calibration/ReferenceImage.h"

#include "platform/AppHome.h"
#include "viewer/ImageFile.h"

#include <QDir>
#include <QFile>
#include <QImageReader>

namespace ReferenceImage {

namespace {

constexpr qint64 kMostPixels = 200'000'000;

void tell(QString* error, const QString& path, const QString& reason)
{
    if (error)
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), reason);
}

} // namespace

QString path(int station)
{
    return platform::inHome(QStringLiteral("\\user\\StandImage_%1.jpg").arg(station));
}

QImage read(const QString& path, QString* error)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > kMostPixels) {
        tell(error, path, QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()));
        return {};
    }
    QImage image = reader.read();
    if (image.isNull())
        tell(error, path, reader.errorString());
    return image;
}

Replaced replace(const QString& target, const QString& chosen)
{
    Replaced replaced;
    QFile::remove(target);
    replaced.image = read(chosen, &replaced.error);
    if (!replaced.image.isNull())
        writeImageFile(replaced.image, target, "jpg", &replaced.error);
    return replaced;
}

} // namespace ReferenceImage
