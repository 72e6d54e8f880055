#include "viewer/ImageFile.h"

#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

bool writeImageFile(const QImage& image, const QString& path, const QByteArray& format, QString* error)
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
