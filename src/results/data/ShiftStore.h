#pragma once

#include "results/data/Shifts.h"

/// The shifts of a plant, in "user/shifts.json" of its home: {"begins": "06:00, 14:00, 22:00"}. Any thread.
namespace ShiftStore {

/// One from midnight to midnight when there is no such file or it says nothing that can be read.
Shifts load(const QString& home);

/// Returns why they could not be stored; empty when they were.
QString store(const QString& home, const Shifts& shifts);

} // namespace ShiftStore
