#pragma once

#include <QString>

namespace platform {

/// Waits until the disk holds everything written to the file so far, by whomever. False when it cannot.
bool flushFile(const QString& path);

} // namespace platform
