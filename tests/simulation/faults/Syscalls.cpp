// The calls by which this process and its libraries reach files: they go by the simulated disk, and to the system.
// The program's own symbols come before those of the C library.

#include "Disk.h"

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

using Simulation::Disk;

namespace {

/// Files of the disk that are open, by their descriptors.
std::map<int, Disk::FilePtr>& openFiles()
{
    static std::map<int, Disk::FilePtr> files;
    return files;
}

Disk::File* fileOf(int descriptor)
{
    const auto file = openFiles().find(descriptor);
    return file == openFiles().end() ? nullptr : file->second.get();
}

/// The system's own.
template <typename Function>
Function next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// Whether the disk refuses to change a file or a name; sets the error. Names take no space, files do.
bool refuses(bool takesSpace)
{
    switch (Disk::instance().fault()) {
    case Disk::NoSpace:
        errno = ENOSPC;
        return takesSpace;
    case Disk::NoWriting:
        errno = EROFS;
        return true;
    case Disk::BadSectors:
        errno = EIO;
        return takesSpace;
    case Disk::None:
        break;
    }
    return false;
}

int openFile(const char* path, int flags, mode_t mode)
{
    using Open = int (*)(const char*, int, ...);
    static const auto real = next<Open>("open64");
    const bool nameless = (flags & O_TMPFILE) == O_TMPFILE;
    const bool ours = Disk::instance().holds(path) && (nameless || (flags & O_DIRECTORY) == 0);
    const bool writes = (flags & O_ACCMODE) != O_RDONLY;
    if (ours && writes && refuses(nameless || ((flags & O_CREAT) != 0 && access(path, F_OK) != 0)))
        return -1;
    const int descriptor = real(path, flags, mode);
    if (descriptor >= 0)
        openFiles().erase(descriptor);
    struct stat64 status;
    if (ours && descriptor >= 0 && fstat64(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        openFiles()[descriptor] =
            nameless ? std::make_shared<Disk::File>() : Disk::instance().opened(path, (flags & O_TRUNC) != 0);
    return descriptor;
}

template <typename Call>
ssize_t wrote(int descriptor, const void* bytes, off64_t offset, Call call)
{
    Disk::File* const file = fileOf(descriptor);
    if (file && refuses(true))
        return -1;
    const ssize_t written = call();
    if (file && written > 0)
        Disk::instance().wrote(*file, offset, static_cast<const char*>(bytes), static_cast<std::size_t>(written));
    return written;
}

int flushed(int descriptor, const char* name)
{
    Disk::File* const file = fileOf(descriptor);
    if (!file)
        return next<int (*)(int)>(name)(descriptor);
    if (Disk::instance().fault() == Disk::BadSectors) {
        errno = EIO;
        return -1;
    }
    Disk::instance().flush(*file);
    return 0;
}

/// What becomes of a name, if the disk lets it be changed.
template <typename Call, typename Then>
int changeName(const char* path, bool takesSpace, Call call, Then then)
{
    const bool ours = Disk::instance().holds(path);
    if (ours && refuses(takesSpace))
        return -1;
    const int result = call();
    if (ours && result == 0)
        then(Disk::instance());
    return result;
}

} // namespace

#define SYSTEM_CALL extern "C" __attribute__((visibility("default")))

#define OPEN(name)                                                                                                     \
    SYSTEM_CALL int name(const char* path, int flags, ...)                                                             \
    {                                                                                                                  \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const bool makes = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;                                 \
        const int mode = makes ? va_arg(arguments, int) : 0;                                                           \
        va_end(arguments);                                                                                             \
        return openFile(path, flags, static_cast<mode_t>(mode));                                                       \
    }

OPEN(open64)
OPEN(open)

SYSTEM_CALL int close(int descriptor)
{
    static const auto real = next<int (*)(int)>("close");
    openFiles().erase(descriptor);
    return real(descriptor);
}

SYSTEM_CALL ssize_t write(int descriptor, const void* bytes, size_t size)
{
    static const auto real = next<ssize_t (*)(int, const void*, size_t)>("write");
    const off64_t offset = fileOf(descriptor) ? lseek64(descriptor, 0, SEEK_CUR) : 0;
    return wrote(descriptor, bytes, offset, [&] { return real(descriptor, bytes, size); });
}

SYSTEM_CALL ssize_t pwrite64(int descriptor, const void* bytes, size_t size, off64_t offset)
{
    static const auto real = next<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64");
    return wrote(descriptor, bytes, offset, [&] { return real(descriptor, bytes, size, offset); });
}

SYSTEM_CALL int ftruncate64(int descriptor, off64_t size) noexcept
{
    static const auto real = next<int (*)(int, off64_t)>("ftruncate64");
    Disk::File* const file = fileOf(descriptor);
    if (file && refuses(false))
        return -1;
    const int result = real(descriptor, size);
    if (file && result == 0)
        Disk::instance().truncated(*file, size);
    return result;
}

SYSTEM_CALL int fsync(int descriptor)
{
    return flushed(descriptor, "fsync");
}

SYSTEM_CALL int fdatasync(int descriptor)
{
    return flushed(descriptor, "fdatasync");
}

SYSTEM_CALL int rename(const char* from, const char* to) noexcept
{
    static const auto real = next<int (*)(const char*, const char*)>("rename");
    return changeName(
        from, false, [&] { return real(from, to); }, [&](Disk& disk) { disk.renamed(from, to); });
}

SYSTEM_CALL int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept
{
    static const auto real = next<int (*)(int, const char*, int, const char*, unsigned)>("renameat2");
    return changeName(
        from, false, [&] { return real(fromFolder, from, toFolder, to, flags); },
        [&](Disk& disk) { disk.renamed(from, to); });
}

/// How a file without a name gets one: by its descriptor, in "/proc".
SYSTEM_CALL int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept
{
    static const auto real = next<int (*)(int, const char*, int, const char*, int)>("linkat");
    const auto file = openFiles().find(std::atoi(std::strrchr(from, '/') + 1));
    return changeName(
        to, false, [&] { return real(fromFolder, from, toFolder, to, flags); },
        [&](Disk& disk) {
            if (file != openFiles().end())
                disk.named(file->second, to);
        });
}

#define REMOVE(name)                                                                                                   \
    SYSTEM_CALL int name(const char* path) noexcept                                                                    \
    {                                                                                                                  \
        static const auto real = next<int (*)(const char*)>(#name);                                                    \
        return changeName(                                                                                             \
            path, false, [&] { return real(path); }, [&](Disk& disk) { disk.unlinked(path); });                        \
    }

REMOVE(unlink)
REMOVE(rmdir)

SYSTEM_CALL int mkdir(const char* path, mode_t mode) noexcept
{
    static const auto real = next<int (*)(const char*, mode_t)>("mkdir");
    return changeName(
        path, true, [&] { return real(path, mode); }, [&](Disk& disk) { disk.madeFolder(path); });
}

SYSTEM_CALL int statvfs(const char* path, struct statvfs* status) noexcept
{
    static const auto real = next<int (*)(const char*, struct statvfs*)>("statvfs");
    const int result = real(path, status);
    constexpr fsblkcnt_t plenty = fsblkcnt_t(100) << 30;
    if (result == 0 && Disk::instance().holds(path))
        status->f_bavail = status->f_bfree = Disk::instance().fault() == Disk::NoSpace ? 0 : plenty / status->f_frsize;
    return result;
}

/// Files are as old as the simulated clock says.
SYSTEM_CALL int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept
{
    static const auto real = next<int (*)(int, const char*, int, unsigned, struct statx*)>("statx");
    const int result = real(folder, path, flags, mask, status);
    const qint64 made = result == 0 && Disk::instance().holds(path) ? Disk::instance().madeAt(path) : -1;
    if (made >= 0) {
        status->stx_mask |= STATX_BTIME;
        status->stx_btime.tv_sec = made / 1000;
        status->stx_btime.tv_nsec = static_cast<unsigned>(made % 1000) * 1000000u;
    }
    return result;
}

/// Whoever waits for another program's lock does not wait long: nobody else runs meanwhile.
SYSTEM_CALL int usleep(useconds_t)
{
    return 0;
}
