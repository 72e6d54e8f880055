#include "platform/System.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/resource.h>
#include <sys/syscall.h>
#endif

namespace platform {

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

/// Fixed, these limits do not grow with what was freed.
void keepMemoryTight()
{
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
    mallopt(M_TRIM_THRESHOLD, 8 << 20);
    mallopt(M_ARENA_MAX, 4);
#endif
}

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

QByteArray nameForLibraries(const QString& path)
{
    return QFile::encodeName(path);
}

QByteArray folderForLibraries(const QString& path)
{
    return QFile::encodeName(path);
}

QString replaceFile(const QString& from, const QString& to)
{
    const int code = std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData());
    return code == 0 ? QString() : qt_error_string(errno);
}

void keepForeignLibrariesOut() {} // the linker wrote the folder into the program

} // namespace platform
