#pragma once

#include "home/Backup.h"

/// Brings a backup into a home, on this machine or another. What it replaces is kept beside, in "restore.old-<time>".
/// The licence stays as it is: it is bound to its machine, so another one needs its own.
namespace Restore {

struct Outcome
{
    QString error; ///< in the operator's language; empty when it was done
    QString kept;  ///< the folder with what was replaced; empty when nothing was
};

/// Takes the files of these parts into a folder of the home's own, "restore.new", and compares each: nothing of the
/// home is touched, also while its cell runs. What is staged is put in place by finish(). Any thread.
Backup::Outcome stage(const QString& home, HomeParts::Set parts, const QString& file,
                      const Backup::Progress& progress = {});

/// Whether a restoration waits for finish().
bool isPending(const QString& home);

/// Drops what was staged.
void drop(const QString& home);

/// Puts what was staged in place; without anything staged it does nothing. Only while no cell uses the home. When it is
/// interrupted at any moment, the next call goes on.
Outcome finish(const QString& home);

} // namespace Restore
