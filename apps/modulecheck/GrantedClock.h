#pragma once

#include <QtGlobal>

/// Time as the machine grants it to this process: while others leave it no processor, it hardly goes on. So a call that
/// waited for the machine is not taken for one that waited by itself. Any thread.
namespace GrantedClock {

/// Milliseconds since the first call.
qint64 ms();

} // namespace GrantedClock
