#include "platform/System.h"

#ifdef Q_OS_WIN
// clang-format off: the first of them has to come first
#include <psapi.h>
#include <windows.h>
// clang-format on
#else
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#endif
#ifdef __GLIBC__
#include <malloc.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/resource.h>
#include <sys/syscall.h>
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

bool replaceFile(const QString& from, const QString& to)
{
    return MoveFileExW(reinterpret_cast<LPCWSTR>(from.utf16()), reinterpret_cast<LPCWSTR>(to.utf16()),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

quint64 fileIdentity(const QString& path)
{
    return GetFileAttributesW(reinterpret_cast<LPCWSTR>(path.utf16())) != INVALID_FILE_ATTRIBUTES ? 1 : 0;
}

qint64 residentMemoryKiB()
{
    PROCESS_MEMORY_COUNTERS counters;
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ? counters.WorkingSetSize / 1024 : 0;
}

std::optional<double> processorTimeMs(qint64 processId)
{
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(processId));
    FILETIME born;
    FILETIME ended;
    FILETIME kernel;
    FILETIME user;
    const bool known = process && GetProcessTimes(process, &born, &ended, &kernel, &user);
    if (process)
        CloseHandle(process);
    if (!known)
        return {};
    const auto ticks = [](FILETIME time) { return double(quint64(time.dwHighDateTime) << 32 | time.dwLowDateTime); };
    return (ticks(kernel) + ticks(user)) / 1e4; // of 100 ns
}

void keepOthersOut() {}

void keepThisLibrary()
{
    HMODULE pinned = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(&keepThisLibrary), &pinned);
}

void releaseFreeMemory()
{
    HeapCompact(GetProcessHeap(), 0);
}

void lowerThreadPriority()
{
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}

#else

qint64 freeSpaceMiB(const QString& folder)
{
    QString existing = folder;
    while (!existing.isEmpty() && !QFileInfo::exists(existing) && existing != QFileInfo(existing).path())
        existing = QFileInfo(existing).path();
    struct statvfs storage = {};
    if (::statvfs(QFile::encodeName(existing).constData(), &storage) != 0)
        return -1;
    // Blocks that are reserved for the administrator are of no use to the cell.
    return static_cast<qint64>(storage.f_bavail) * static_cast<qint64>(storage.f_frsize) / 1024 / 1024;
}

bool flushFile(const QString& path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool flushed = ::fdatasync(file) == 0;
    ::close(file);
    return flushed;
}

bool replaceFile(const QString& from, const QString& to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// The number of the file, and a part for the device: a folder may be mounted over.
quint64 fileIdentity(const QString& path)
{
    struct stat file = {};
    if (::stat(QFile::encodeName(path).constData(), &file) != 0)
        return 0;
    return static_cast<quint64>(file.st_ino) + (static_cast<quint64>(file.st_dev) << 48);
}

qint64 residentMemoryKiB()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toLongLong() * sysconf(_SC_PAGESIZE) / 1024 : 0;
}

std::optional<double> processorTimeMs(qint64 processId)
{
    clockid_t clock{};
    timespec used{};
    if (clock_getcpuclockid(static_cast<pid_t>(processId), &clock) != 0 || clock_gettime(clock, &used) != 0)
        return {};
    return double(used.tv_sec) * 1e3 + double(used.tv_nsec) / 1e6;
}

void keepOthersOut()
{
    umask(umask(S_IRWXO) | S_IRWXO);
}

void keepThisLibrary() {} // linked with "nodelete"

void releaseFreeMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

void lowerThreadPriority()
{
#ifdef Q_OS_LINUX
    // On Linux a nice value belongs to a thread.
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), 10);
#endif
}

#endif

} // namespace platform
