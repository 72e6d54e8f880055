#pragma once

#include "Locate.h"

#include <QByteArray>

/// What leaves the program for one image.
namespace Report {

/// One JSON object; of a comparison with the second run under "edited", and what changed.
QJsonObject lineOf(const Located& located);

/// The same as a table of comma-separated text for spreadsheets: UTF-8 with a byte order mark, lines end with CR LF.
QByteArray csvHeader(bool compared);
/// Numbers with a point, and empty where there is no value.
QByteArray csvLine(const Located& located);

} // namespace Report
