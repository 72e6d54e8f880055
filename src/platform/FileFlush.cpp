#include "platform/FileFlush.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <QFile>

#include <fcntl.h>
#include <unistd.h>
#endif

namespace platform {

#ifdef Q_OS_WIN

bool flushFile(const QString& path)
{
    const HANDLE file =
        CreateFileW(reinterpret_cast<LPCWSTR>(path.utf16()), GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const bool flushed = FlushFileBuffers(file) != 0;
    CloseHandle(file);
    return flushed;
}

#else

bool flushFile(const QString& path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool flushed = ::fdatasync(file) == 0;
    ::close(file);
    return flushed;
}

#endif

} // namespace platform
