#pragma once

#include "config/StationConfig.h"

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

/// What a field stands for that shows `stored`: that itself, with all its digits, until another text is typed.
double kept(const QString& text, double stored);

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

/// How far the calibration's map misses the fourth pair, in parts of the longest way between the real points.
double relativeResidual(const FourPointCalibration& calibration);

/// What speaks against a station's four-point calibration, as a sentence for the operator: why it is not usable, or
/// that the fourth pair lies elsewhere by more than 2 % of the field. Empty when nothing does.
QString fourPointDoubt(const StationConfig& config);

/// Whether three points are too nearly on one line to carry a map: their triangle's height is below 1 % of its longest
/// side. Equal points are.
bool nearlyCollinear(const QPointF& a, const QPointF& b, const QPointF& c);
