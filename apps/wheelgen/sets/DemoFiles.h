#pragma once

#include "DemoHome.h"

/// The single files of a demo home.
namespace DemoFiles {

/// Writes each file that the home lacks; see DemoHome::make().
bool writeMissing(const DemoPlan& plan, QStringList* made, QString* error);

} // namespace DemoFiles
