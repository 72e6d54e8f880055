#pragma once

#include "Camera.h"

#include <valvecell/ICameraDiscovery.h>
#include <valvecell/ICameraParameters.h>

#include <memory>

struct CameraConfig;
class CameraEvents;

/// Makes the camera of one entry. Never null: for a type without a driver it is one that is never ready and says so.
/// `events` outlives the camera.
std::unique_ptr<Camera> makeCamera(const CameraConfig& config, CameraEvents& events);

/// The types with a driver.
QVector<CameraType> drivenTypes();

/// The parameters of a camera of that type; empty for a type without a driver.
QVector<CameraParameter> parametersOf(CameraType type);

/// Looks for cameras of all types, in a steady order. Takes seconds; any thread.
QVector<FoundCamera> findCameras();
