#pragma once

#include "modules/ModuleInfo.h"

class QLibrary;

/// What a library says of itself, after it was to be loaded and `symbol` to be resolved; not `working` yet. GUI thread.
ModuleInfo describeModule(const QString& name, QLibrary& library, const char* symbol);

/// The same once it is known whether its object was made.
ModuleInfo withObject(ModuleInfo info, bool made);
