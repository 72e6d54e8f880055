#pragma once

#include "DeviceCamera.h"

#include <valvecell/ICameraDiscovery.h>

#include <memory>

class CameraEvents;
struct CameraConfig;

/// How cameras of one type are made and found.
struct CameraDriver
{
    CameraType type;
    QVector<CameraParameter> (*parameters)(); ///< in the present language
    std::unique_ptr<Camera> (*make)(const CameraConfig& config, CameraEvents& events);
    /// Looks for cameras, which may take seconds; called in the background. Null for a type that cannot be found.
    QVector<FoundCamera> (*find)();
};

/// The driver of a type of CameraDevice, which has `static constexpr CameraType type`, `static QVector<CameraParameter>
/// parameters()`, DeviceCamera::timeLimit() among them, and `static QVector<FoundCamera> find()`.
template <typename Device>
constexpr CameraDriver deviceDriver()
{
    return {Device::type, Device::parameters,
            [](const CameraConfig& config, CameraEvents& events) -> std::unique_ptr<Camera> {
                return std::make_unique<DeviceCamera>(config, events, Device::parameters, std::make_unique<Device>());
            },
            Device::find};
}

/// Network and USB3 Vision cameras; null where the library for them is missing.
const CameraDriver* aravisDriver();
/// USB cameras through Video4Linux; null where there is no such thing.
const CameraDriver* v4l2Driver();
