#pragma once

#include <QString>

/// How the calibration dialogs read numbers from fields and write them. The C locale on every machine: a point parts
/// the decimals.
namespace FieldNumber {

/// The number in a field; 0, with `isNumber` false, for anything else: letters, commas, full-width digits, and what no
/// finite double can hold.
double value(const QString& text, bool* isNumber = nullptr);

/// General format with six significant digits.
QString text(double value);

/// A coordinate cut to a whole pixel, towards zero.
int truncated(double coordinate);

} // namespace FieldNumber
