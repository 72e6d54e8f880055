#pragma once

#include <QtGlobal>

namespace platform {

/// The process's resident memory in KiB; 0 when the platform does not tell.
qint64 residentMemoryKiB();

} // namespace platform
