#pragma once

#include "SetOptions.h"

/// Scores all ways on each folder that the options name, prints a table for each and writes what else is asked for.
/// False when a folder cannot be used or a file cannot be written; `error` says which and why.
bool benchmarkSets(const SetOptions& options, QString* error);
