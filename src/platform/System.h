#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What the program asks of the operating system beyond what its libraries do. Any thread.
namespace platform {

/// Free MiB of the drive on which the folder lies: the drive of its first two characters on Windows, elsewhere the file
/// system of the folder or of the nearest one above it that exists. -1 when it cannot be found out.
qint64 freeSpaceMiB(const QString& folder);

/// Waits until the disk holds everything written to the file so far, by whomever. False when it cannot.
bool flushFile(const QString& path);

/// Tells the file under a name from another that took its name while the first is open; 0 when there is none. On
/// Windows nobody can replace an open file: a number that says no more than that there is one.
quint64 fileIdentity(const QString& path);

/// The process's resident memory in KiB; 0 when the platform does not say.
qint64 residentMemoryKiB();

/// The processor time in milliseconds that a process has used on all cores; nothing when there is no such process or it
/// is not ours to see.
std::optional<double> processorTimeMs(qint64 processId);

/// The name of a file as the libraries that open files themselves (libzip, libxlsxwriter) take it.
QByteArray nameForLibraries(const QString& path);

/// The name of a folder that exists, for C functions that know no Unicode; on Windows its short name where the
/// machine's code page lacks a character.
QByteArray folderForLibraries(const QString& path);

/// Renames a file on the same drive, over another that may be there, in one step. Empty when done, else the reason. On
/// Windows a file that somebody has open cannot be replaced: it is tried again for two seconds, which a virus scanner
/// or an indexer takes at most. Not for the GUI thread.
QString replaceFile(const QString& from, const QString& to);

/// From now on libraries are looked for in the application's folder first and never in the working directory, which is
/// the home: anybody may put a file there. Those of camera makers are found by PATH as ever. At the start.
void keepForeignLibrariesOut();

/// From now on files and folders are made without rights for those who are neither owner nor of the group, whatever the
/// user's habit is; on Windows the folder above decides. At the start.
void keepOthersOut();

/// Keeps the library with the calling code in the process when its host unloads it: singletons, and what they left with
/// Qt, live until the process ends. Where the linker does that, nothing.
void keepThisLibrary();

/// Has the memory of large images go back to the system as soon as it is freed, whichever thread had it: the C library
/// would keep it for each thread. To be called before the process has threads.
void keepMemoryTight();

/// Gives memory that the process has freed but keeps for itself back to the system. It takes some milliseconds for each
/// 100 MiB, during which other threads may wait for memory.
void releaseFreeMemory();

/// Makes the calling thread yield the processor to the others of the program whenever they want it.
void lowerThreadPriority();

} // namespace platform
