#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

/// How the disk cleaner deletes below a root. No operation follows a link or deletes one. An empty root, or the root of
/// a file system, is never cleaned. What cannot be deleted stays, without a word. Any thread.
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

/// Deletes the days of an image archive (see ImageArchive) that were made before the time: of the sub-folders that are
/// named by a date, in "Station1" and "Station2" and the model folders below, the images that are named by their time,
/// and each folder that is empty then. Whatever has another name stays, with the folders that lead to it: a plant keeps
/// pictures of its own there. Returns how many of the days went wholly.
int deleteFoldersBefore(const QString& root, const QDateTime& time, const Stop& stop);

} // namespace FolderSweep
