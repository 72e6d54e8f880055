#pragma once

#include <QByteArray>

namespace platform {

/// What tells this machine from all others, as the machine itself states it; nothing for the eye, and not to be shown
/// or sent as it is. On Windows it is the hardware's identity, on other systems that of the installed system. The same
/// at each call and after each restart; empty when the machine does not say. Takes up to some 100 ms on Windows. Any
/// thread.
QByteArray machineIdentity();

} // namespace platform
