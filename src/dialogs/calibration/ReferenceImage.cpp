#include "dialogs/calibration/ReferenceImage.h"

#include "common/ImageFile.h"
#include "platform/AppHome.h"

#include <QDir>
#include <QFile>

namespace ReferenceImage {

QString path(int station)
{
    return platform::inHome(QStringLiteral("\\user\\StandImage_%1.jpg").arg(station));
}

QImage read(const QString& path, QString* error)
{
    const ImageFile file = ImageFile::read(path);
    if (error && file.image.isNull())
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.reason);
    return file.image;
}

Replaced replace(const QString& target, const QString& chosen)
{
    Replaced replaced;
    QFile::remove(target);
    replaced.image = read(chosen, &replaced.error);
    if (!replaced.image.isNull())
        ImageFile::write(replaced.image, target, "jpg", &replaced.error);
    return replaced;
}

} // namespace ReferenceImage
