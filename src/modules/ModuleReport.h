#pragma once

#include <QString>

class QLibrary;

/// What there is to report about a module of the program.
struct ModuleInfo
{
    QString name;         ///< the name by which it is loaded
    bool working = false; ///< its object was made
    QString file;         ///< of its library; as it was asked for when it could not be loaded
    QString version;      ///< empty when the module does not say
    QString problem;      ///< why it does not work; empty when it does
};

/// Why a loaded library cannot be used: it was built for interfaces of another major version. Empty when it can, and
/// for one that names no version. GUI thread.
QString interfaceProblem(QLibrary& library);

/// What a library says of itself, after it was to be loaded and `symbol` to be resolved; not `working` yet. GUI thread.
ModuleInfo describeModule(const QString& name, QLibrary& library, const char* symbol);

/// The same once it is known whether its object was made.
ModuleInfo withObject(ModuleInfo info, bool made);
