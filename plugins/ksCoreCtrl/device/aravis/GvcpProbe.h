#pragma once

#include "../CameraDevice.h"

#include <optional>

/// Short questions to a GigE Vision camera by address, that anyone may ask beside the program that controls it, and
/// that end soon when nobody answers: the library itself tries for seconds. Any thread.
namespace GvcpProbe {

/// Who is at that address; nothing when no camera answers.
std::optional<DeviceIdentity> identify(const QString& address, std::chrono::milliseconds limit);

constexpr quint32 controlPrivilege = 0x0A00; ///< a register; not 0 while a program controls the camera

std::optional<quint32> readRegister(const QString& address, quint32 reg, std::chrono::milliseconds limit);

/// The address of this machine from which the camera can be reached; empty when there is no way.
QString ownAddress(const QString& address);

} // namespace GvcpProbe
