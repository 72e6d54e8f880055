#pragma once

#include <QPointF>
#include <QTransform>

#include <array>

/// A map from image pixels to machine coordinates as a 2x3 matrix in row order, as StationConfig.h keeps it.
using AffineMap = std::array<double, 6>;

/// The map that takes the first three pixel points to the first three real points; the fourth pair takes no part.
/// Coordinates are narrowed to single precision first. Points on one line give whatever the solver gives.
AffineMap solveAffine(const std::array<QPoint, 4>& pixels, const std::array<QPointF, 4>& real);

QTransform toTransform(const AffineMap& map);

/// Whether three points are too nearly on one line to carry a map: their triangle's height is below 1 % of its longest
/// side. Equal points are.
bool nearlyCollinear(const QPointF& a, const QPointF& b, const QPointF& c);
