#pragma once

#include <QPointF>

#include <optional>

class QString;

/// How the cell turns pixels into machine coordinates, read from its home, and the way back.
namespace CellCalibration {

/// Reads "globalConfig.json" below `home`; false with the reason when it cannot be used.
bool load(const QString& home, QString* error);

/// The image pixel from which `station` made the machine coordinates `point`; nothing when its calibration has no way
/// back (a scale of 0, a map that folds the plane).
std::optional<QPointF> pixelOf(int station, QPointF point);

} // namespace CellCalibration
