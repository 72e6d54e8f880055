#pragma once

#include "results/data/Shifts.h"

/// The shifts of a plant, as its ShiftConfig says. Any thread.
namespace ShiftStore {

/// One from midnight to midnight when there is no such file or it says nothing that can be read.
Shifts load(const QString& home);

} // namespace ShiftStore
