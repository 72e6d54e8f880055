#include "platform/System.h"

#include <QDir>
#include <QElapsedTimer>

#include <malloc.h>

// Each needs the one before.
// clang-format off
#include <windows.h>
#include <psapi.h>
// clang-format on

namespace platform {

namespace {

constexpr unsigned long msBetweenTries = 20;
constexpr qint64 msOfTries = 2000;

/// An absolute path in the system's own writing, which has no limit of length.
QString nativePath(const QString& path)
{
    const QString native = QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
    if (native.startsWith(QLatin1String("\\\\?\\")) || native.startsWith(QLatin1String("\\\\.\\")))
        return native;
    return native.startsWith(QLatin1String("\\\\")) ? QStringLiteral("\\\\?\\UNC") + native.mid(1)
                                                    : QStringLiteral("\\\\?\\") + native;
}

LPCWSTR wide(const QString& text)
{
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

} // namespace

qint64 freeSpaceMiB(const QString& folder)
{
    const QString drive = folder.left(2) + QLatin1Char('\\');
    ULARGE_INTEGER forCaller;
    ULARGE_INTEGER total;
    ULARGE_INTEGER free;
    if (!GetDiskFreeSpaceExW(wide(drive), &forCaller, &total, &free))
        return -1;
    return static_cast<qint64>(free.QuadPart / 1024 / 1024);
}

bool flushFile(const QString& path)
{
    const HANDLE file =
        CreateFileW(wide(nativePath(path)), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const bool flushed = FlushFileBuffers(file) != 0;
    CloseHandle(file);
    return flushed;
}

quint64 fileIdentity(const QString& path)
{
    return GetFileAttributesW(wide(nativePath(path))) != INVALID_FILE_ATTRIBUTES ? 1 : 0;
}

qint64 residentMemoryKiB()
{
    PROCESS_MEMORY_COUNTERS counters;
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters)
               ? static_cast<qint64>(counters.WorkingSetSize / 1024)
               : 0;
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

void keepMemoryTight() {} // large blocks are the system's own

void releaseFreeMemory()
{
    _heapmin(); // the C library's, which may be one of its own
    HeapCompact(GetProcessHeap(), 0);
}

void lowerThreadPriority()
{
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}

/// UTF-8, whatever the code page of the machine is.
QByteArray nameForLibraries(const QString& path)
{
    return QDir::toNativeSeparators(path).toUtf8();
}

/// A folder's short name is all of ASCII.
QByteArray folderForLibraries(const QString& path)
{
    const QString native = QDir::toNativeSeparators(path);
    QByteArray local = native.toLocal8Bit();
    wchar_t shortName[MAX_PATH];
    if (QString::fromLocal8Bit(local) != native && GetShortPathNameW(wide(native), shortName, MAX_PATH) != 0)
        local = QString::fromWCharArray(shortName).toLocal8Bit();
    return local;
}

QString replaceFile(const QString& from, const QString& to)
{
    QElapsedTimer tried;
    tried.start();
    while (!MoveFileExW(wide(nativePath(from)), wide(nativePath(to)), MOVEFILE_REPLACE_EXISTING)) {
        const DWORD code = GetLastError();
        const bool held =
            code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION || code == ERROR_ACCESS_DENIED;
        if (!held || tried.elapsed() > msOfTries)
            return qt_error_string(static_cast<int>(code));
        Sleep(msBetweenTries);
    }
    return {};
}

void keepForeignLibrariesOut()
{
    SetDllDirectoryW(L"");
}

} // namespace platform
