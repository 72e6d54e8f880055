#pragma once

#include "common/Calibration.h"

#include <QVector>

#include <optional>

/// A place in the picture, and the same place in the machine.
struct PointPair
{
    QPointF pixel; ///< the middle of the top-left pixel is (0, 0)
    QPointF real;  ///< millimetres
};

/// How far a map misses its pairs, in millimetres.
struct FitResiduals
{
    QVector<QPointF> each; ///< map minus real, in the order of the pairs
    double rms = 0;
    double largest = 0;
};

/// Maps from picture to machine by least squares. Pure functions, double precision.
namespace PlaneFit {

/// Nothing for fewer than three pairs, and for points on one line.
std::optional<AffineMap> affine(const QVector<PointPair>& pairs);

/// Turn, one scale and shift; mirrored where that fits better. Nothing for fewer than two pairs, and for points that
/// all lie on each other.
std::optional<AffineMap> similarity(const QVector<PointPair>& pairs);

FitResiduals residuals(const AffineMap& map, const QVector<PointPair>& pairs);

} // namespace PlaneFit
