#pragma once

#include "common/Calibration.h"

#include <QPoint>
#include <QString>

/// From what the fields of a calibration dialog hold to the calibration that follows from it. Pure functions; points in
/// image pixels, real points and lengths in millimetres.

/// How the dialogs read numbers from fields and write them. The C locale on every machine: a point parts the decimals.
namespace FieldNumber {

/// The number in a field; 0, with `isNumber` false, for anything else: letters, commas, full-width digits, and what no
/// finite double can hold.
double value(const QString& text, bool* isNumber = nullptr);

/// General format with six significant digits.
QString text(double value);

/// A coordinate cut to a whole pixel, towards zero.
int truncated(double coordinate);

} // namespace FieldNumber

/// From integer differences.
double pixelDistance(const QPoint& a, const QPoint& b);

/// Millimetres per pixel of two points that are `pixels` apart in the image and `millimetres` in the machine. 1 for
/// points that lie on each other, NaN when they have no distance in millimetres either: plants count on it.
double scaleOf(double pixels, double millimetres);

/// The map that takes the first three pixel points to the first three real points; the fourth pair takes no part.
/// Coordinates are narrowed to single precision first. Points on one line give whatever the solver gives.
AffineMap solveAffine(const std::array<QPoint, 4>& pixels, const std::array<QPointF, 4>& real);

/// Whether three points are too nearly on one line to carry a map: their triangle's height is below 1 % of its longest
/// side. Equal points are.
bool nearlyCollinear(const QPointF& a, const QPointF& b, const QPointF& c);
