#pragma once

#include <QString>

/// Millimetres per pixel of the station that runs a solution, by that station's calibration in user/globalConfig.json;
/// of a four-point calibration the mean over all directions. 0 when no station runs the solution or it is not
/// calibrated. Reads a small file; GUI thread.
double millimetresPerPixel(const QString& solution);
