#pragma once

#include "PartReport.h"

#include <QJsonObject>
#include <QStringList>

/// A run's report for a person, and for a program.
namespace ReportText {

QString header();                 ///< of the table of parts
QString line(const PartRow& row); ///< one part in that table
QStringList summary(const ReportFigures& figures);

/// Keys as in the manual; what is not known is null.
QJsonObject json(const PartReport& report);

} // namespace ReportText
