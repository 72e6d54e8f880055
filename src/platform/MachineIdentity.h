#pragma once

#include <QByteArray>

namespace platform {

/// What distinguishes this machine from all others, as the machine itself states it; nothing for the eye, and not to be
/// shown or sent as it is. On Windows it is the hardware's identity, on other systems that of the installed system. The
/// same at each call and after each restart; empty when the machine states none. Takes up to some 100 ms on Windows,
/// and is empty there after ten seconds without an answer. Any thread. Not QSysInfo::machineUniqueId(): that is the
/// installation's registry number on Windows and D-Bus's file alone on Linux, so machines would get other codes than
/// those that licences were issued for.
QByteArray machineIdentity();

} // namespace platform
