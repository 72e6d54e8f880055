#pragma once

#include <valvecell/ISerialPorts.h>

/// Where Linux keeps a name for each converter that follows it from device to device.
constexpr const char* namesByIdFolder = "/dev/serial/by-id";

/// The serial ports of this machine, in the order of their names, each by its name in `byIdFolder` if it has one. What
/// has such a name is listed even where the system describes no device.
QVector<FoundPort> findPorts(const QString& byIdFolder = QLatin1String(namesByIdFolder));
