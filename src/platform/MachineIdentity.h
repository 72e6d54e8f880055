#pragma once

#include <QByteArray>

namespace platform {

/// What distinguishes this machine from all others, as the machine itself states it; nothing for the eye, and not to be
/// shown or sent as it is. On Windows it is the hardware's identity, on other systems that of the installed system. The
/// same at each call and after each restart; empty when the machine states none. Takes some 100 ms on Windows, and up
/// to a minute when the machine has just been switched on, after which it is empty: not for the GUI thread, but for any
/// other. Not QSysInfo::machineUniqueId(): that is the installation's registry number on Windows and D-Bus's file alone
/// on Linux, so machines would get other codes than those that licences were issued for.
QByteArray machineIdentity();

} // namespace platform
