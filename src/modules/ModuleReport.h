#pragma once

#include "modules/ModuleInfo.h"

class QLibrary;

/// Why a loaded library cannot be used: it was built for interfaces of another major version. Empty when it can, and
/// for one that tells no version. GUI thread.
QString interfaceProblem(QLibrary& library);

/// What a library says of itself, after it was to be loaded and `symbol` to be resolved; not `working` yet. GUI thread.
ModuleInfo describeModule(const QString& name, QLibrary& library, const char* symbol);

/// The same once it is known whether its object was made.
ModuleInfo withObject(ModuleInfo info, bool made);
