#pragma once

#include "graphics/ViewOverlay.h"

#include <memory>
#include <vector>

/// What a calibrated picture tells about the machine: its axes and a scale bar in millimetres. Nothing for a map that
/// cannot be turned round.
/// \param toMachine from image pixels to machine coordinates in millimetres
std::vector<std::unique_ptr<ViewOverlay>> machineOverlays(const QTransform& toMachine);
