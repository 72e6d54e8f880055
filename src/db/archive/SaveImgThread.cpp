#include "db/archive/SaveImgThread.h"

#include "db/archive/JpegEncoder.h"
#include "platform/System.h"

#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

#include <cerrno>

SaveImgThread::SaveImgThread(const QImage& image, const QString& folder, const QString& fileName, QObject* parent)
    : QThread(parent)
    , m_image(image)
    , m_bytes(image.sizeInBytes())
    , m_folder(folder)
    , m_fileName(fileName)
{
}

/// Giving memory back locks out whoever wants some: a thread that yields to all others would hold them up for a second
/// on a loaded machine.
void SaveImgThread::run()
{
    if (!m_lastOfBurst)
        platform::lowerThreadPriority();
    write();
    if (m_lastOfBurst)
        platform::releaseFreeMemory();
}

void SaveImgThread::write()
{
    if (QDir().mkpath(m_folder))
        writeImageFile(m_image, path(), &m_error);
    else
        m_error = tr("不能创建文件夹%1").arg(m_folder);
    m_image = QImage();
}

namespace {

/// What a JPEG file has when nothing else is asked for.
constexpr int defaultQuality = 75;

bool isJpeg(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg");
}

bool writeJpeg(const QImage& image, QSaveFile& file, QString* error)
{
    const QByteArray bytes = encodeJpeg(image, defaultQuality, error);
    return !bytes.isEmpty() && file.write(bytes) == bytes.size();
}

bool writeOther(const QImage& image, QSaveFile& file, QString* error)
{
    QImageWriter writer(&file, QFileInfo(file.fileName()).suffix().toLatin1());
    if (writer.write(image))
        return true;
    *error = writer.errorString();
    return false;
}

} // namespace

bool writeImageFile(const QImage& image, const QString& path, QString* error)
{
    QSaveFile file(path);
    QString reason;
    errno = 0;
    const auto write = isJpeg(path) ? writeJpeg : writeOther;
    // Only flush() reports a full disk when the rest fits into the buffer; commit() would keep a file that is cut off.
    const bool good = file.open(QIODevice::WriteOnly) && write(image, file, &reason) && file.flush() && file.commit();
    if (good)
        return true;
    // The classes of files and images report a full disk as an unknown error.
    if (errno == ENOSPC || platform::freeSpaceMiB(QFileInfo(path).path()) == 0)
        reason = SaveImgThread::tr("磁盘已满");
    *error = path + QStringLiteral(": ") + (reason.isEmpty() ? file.errorString() : reason);
    return false;
}
