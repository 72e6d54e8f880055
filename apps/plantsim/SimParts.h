#pragma once

#include "SimStore.h"
#include "plant/RowBatch.h"

/// What the parts and lines of simulated cells are like: the same for the same cell and row, always. Each cell has a
/// character of its own: yield, drift, models.
namespace SimParts {

PlantPart part(int cell, const SimStore::Row& row, int zoneSeconds);
PlantLine line(int cell, const SimStore::Row& row, int zoneSeconds);
/// A drawn wheel as it was "seen".
QByteArray picture(const PlantPart& part);
QByteArray alarms(int cell, qint64 now);

} // namespace SimParts
