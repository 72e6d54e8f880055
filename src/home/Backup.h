#pragma once

#include "home/BackupManifest.h"

#include <functional>

/// A backup: one zip file that holds the chosen parts of a home, each file with its checksum. Any thread; all of it
/// takes as long as the disk does.
namespace Backup {

/// Bytes done of so many; returns false to give up.
using Progress = std::function<bool(qint64 done, qint64 total)>;

struct Outcome
{
    QString error; ///< in the operator's language; empty when it was done
    BackupManifest manifest;
    bool isGood() const { return error.isEmpty(); }
};

/// Makes a backup of a home, whose cell may run: databases are copied as of one moment, other files as they are found.
/// The file appears at the end, whole and on the disk; nothing of it stays after a failure, such as a full disk, and a
/// file of that name stays as it was.
Outcome make(const QString& home, HomeParts::Set parts, const QString& file, const Progress& progress = {});

/// What a backup says of itself; its files are not looked at.
Outcome look(const QString& file);

/// Takes the files of these parts out of a backup to below a folder, which is made. Each is compared with its checksum:
/// an error when one differs or is missing, and the folder is gone then.
Outcome extract(const QString& file, HomeParts::Set parts, const QString& folder, const Progress& progress = {});

/// Reads all of a backup, and compares.
Outcome check(const QString& file, const Progress& progress = {});

} // namespace Backup
