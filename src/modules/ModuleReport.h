#pragma once

#include <QString>

#include <exception>

class QLibrary;

/// Calls into a module that may not keep its promise never to throw, while it is brought up or taken down; CallWatch is
/// for the calls between. Returns whether it came back as it should; a warning that names the module says what it
/// threw.
template <typename Call>
bool callModule(const QString& module, Call call)
{
    try {
        call();
        return true;
    } catch (const std::exception& thrown) {
        qWarning("module %s threw: %s", qUtf8Printable(module), thrown.what());
    } catch (...) {
        qWarning("module %s threw", qUtf8Printable(module));
    }
    return false;
}

/// What there is to report about a module of the program.
struct ModuleInfo
{
    QString name;         ///< the name by which it is loaded
    bool working = false; ///< its object was made
    QString file;         ///< of its library; as it was asked for when it could not be loaded
    QString version;      ///< empty when the module does not say
    QString problem;      ///< why it does not work; empty when it does
};

/// Why a module's file must not even be loaded: it was built with another major version of Qt, by the libraries that it
/// names. Empty when it may be, and for a file that is not found.
QString qtProblem(const QString& file);

/// Loads a module's library, with all that it needs of others: a function that is nowhere is found now and not when it
/// is first called. GUI thread.
bool loadModule(QLibrary& library);

/// Why a loaded library cannot be used: it was built for interfaces of another major version. Empty when it can, and
/// for one that names no version. GUI thread.
QString interfaceProblem(QLibrary& library);

/// What a library says of itself, after it was to be loaded and `symbol` to be resolved; not `working` yet. GUI thread.
ModuleInfo describeModule(const QString& name, QLibrary& library, const char* symbol);

/// The same once it is known whether its object was made.
ModuleInfo withObject(ModuleInfo info, bool made);
