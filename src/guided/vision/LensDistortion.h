#pragma once

#include "guided/vision/PlaneFit.h"

#include <QSize>

#include <optional>

/// How a lens bends a flat board: a pixel at distance r from the picture's middle belongs to the place at
/// r (1 + strength (r / R)^2), R being half the picture's diagonal. Positive: the picture is drawn in at its corners,
/// a barrel; negative: a cushion. The perspective of a board that is tilted is told apart from it.
struct LensDistortion
{
    double strength = 0; ///< share of the corner's distance by which the corner is moved
    QSize picture;
    double rmsWith = 0;    ///< millimetres that are left with it
    double rmsWithout = 0; ///< and without, by the perspective alone

    /// Where a pixel would be seen without it.
    QPointF straight(const QPointF& pixel) const;
    /// How far it moves the picture's corner, pixels.
    double atCorner() const;

    /// From the points of a board. Nothing for fewer than nine, which cannot tell it from tilt.
    static std::optional<LensDistortion> estimate(const QVector<PointPair>& pairs, const QSize& picture);
};
