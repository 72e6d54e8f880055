#pragma once

#include <QString>

namespace platform {

/// Free MiB of the drive on which the folder lies: the drive of its first two characters on Windows, elsewhere the file
/// system of the folder or of the nearest one above it that exists. -1 when it cannot be told.
qint64 freeSpaceMiB(const QString& folder);

} // namespace platform
