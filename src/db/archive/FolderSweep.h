#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

/// How the disk cleaner deletes below a root. No operation follows a link, and a link is never taken for what it points
/// to: inside a folder that goes, the link itself goes; anywhere else it stays. An empty root, or the root of a file
/// system, is never cleaned. What cannot be deleted stays, without a word. Any thread.
namespace FolderSweep {

/// Asked between two deletions; true ends the operation.
using Stop = std::function<bool()>;

/// When the file or folder was made, or last changed where the file system does not tell.
QDateTime creationTime(const QString& path);

/// Deletes the files below the root, at any depth, that were made before the time, if they are more than ten.
/// Returns how many were deleted.
int deleteFilesBefore(const QString& root, const QDateTime& time, const Stop& stop);

/// Looks at the oldest 600 files below the root, at any depth, and deletes those that are images by their last four
/// characters. Returns how many were deleted.
int deleteOldestImages(const QString& root, const Stop& stop);

/// Deletes the sub-folders of the root that were made before the time, with all that is in them. Returns how many went.
int deleteFoldersBefore(const QString& root, const QDateTime& time, const Stop& stop);

} // namespace FolderSweep
