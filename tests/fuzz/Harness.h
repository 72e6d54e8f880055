#pragma once

#include <QByteArray>
#include <QString>

/// What the targets share. A target feeds one reader with damaged input and checks what holds for every answer; it is
/// built twice: with libFuzzer by ./fuzz, and into the test that replays the checked-in inputs with any compiler.
///
///     FUZZ_TARGET(users)
///     {
///         fuzz::require(...);
///     }
namespace fuzz {

using Run = void (*)(const QByteArray& bytes);

/// Registers a target by its name, which is that of its folder in corpus/, too.
struct Target
{
    Target(const char* name, Run run);
};

/// Ends the process with a report when `holds` is false.
void require(bool holds, const char* what);

/// A file of a home that belongs to this process alone and lies in memory where the system offers that. Writes `bytes`
/// to it and returns its path. `below`: "/user/globalConfig.json".
QString homeFile(const char* below, const QByteArray& bytes);
QString home();

/// Whether this input is one of the few on which slow checks are made, such as writing and reading again.
bool isChosen(const QByteArray& bytes);

/// A run fed its reader so many times more. The sum takes the place of libFuzzer's count.
void alsoRan(int times);

} // namespace fuzz

#define FUZZ_TARGET(name)                                                                                              \
    static void run_##name(const QByteArray& bytes);                                                                   \
    static const fuzz::Target target_##name(#name, run_##name);                                                        \
    static void run_##name(const QByteArray& bytes)
