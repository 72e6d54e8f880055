#include "platform/DiskSpace.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <QFileInfo>
#include <QStorageInfo>
#endif

namespace platform {

#ifdef Q_OS_WIN

qint64 freeSpaceMiB(const QString& folder)
{
    const QString drive = folder.left(2) + QLatin1Char('\\');
    ULARGE_INTEGER forCaller;
    ULARGE_INTEGER total;
    ULARGE_INTEGER free;
    if (!GetDiskFreeSpaceExW(reinterpret_cast<LPCWSTR>(drive.utf16()), &forCaller, &total, &free))
        return -1;
    return static_cast<qint64>(free.QuadPart / 1024 / 1024);
}

#else

qint64 freeSpaceMiB(const QString& folder)
{
    QString existing = folder;
    while (!existing.isEmpty() && !QFileInfo::exists(existing) && existing != QFileInfo(existing).path())
        existing = QFileInfo(existing).path();
    const QStorageInfo storage(existing);
    // Blocks that are reserved for the administrator are of no use to the cell.
    return storage.isValid() && storage.isReady() ? storage.bytesAvailable() / 1024 / 1024 : -1;
}

#endif

} // namespace platform
