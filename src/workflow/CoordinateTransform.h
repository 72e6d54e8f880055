#pragma once

#include <QPointF>

struct StationConfig;

/// Image pixels to machine coordinates (millimetres), by a station's calibration; double precision, nothing rounded.
///
/// Two points: (px * scale + x offset, py * scale + y offset). Four points: the affine map, plus its offsets. Either is
/// then swapped if the calibration in force says so; a swapped X carries the Y offset.
QPointF toMachine(const StationConfig& station, bool fourPoint, const QPointF& pixel);

/// The affine map of a four-point calibration alone, without swap and offsets.
QPointF affineMapped(const StationConfig& station, const QPointF& pixel);
