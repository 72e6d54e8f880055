#include "CameraFactory.h"

#include "CameraConfig.h"
#include "DriverlessCamera.h"
#include "VirtualCamera.h"

std::unique_ptr<Camera> makeCamera(const CameraConfig& config, CameraEvents& events)
{
    switch (CameraType(config.type)) {
    case CameraType::Virtual:
        return std::make_unique<VirtualCamera>(config, events);
    default:
        return std::make_unique<DriverlessCamera>(config, events);
    }
}

QVector<CameraType> drivenTypes()
{
    return {CameraType::Virtual};
}

QVariantMap defaultSettings(CameraType type)
{
    return type == CameraType::Virtual ? VirtualSettings().toMap() : QVariantMap();
}
