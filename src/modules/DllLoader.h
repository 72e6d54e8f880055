#pragma once

#include "modules/ModuleReport.h"

#include <QLibrary>
#include <QStringList>

/// A module's library with its initialise and free functions. GUI thread.
class DllLoader : public QLibrary
{
public:
    /// Loads the module `baseName` from the first of `searchDirs` that holds its file; with none that does, from the
    /// last one, and with an empty list from where the platform looks. A log line says what fails.
    DllLoader(const QString& baseName, const char* initSymbol, const char* freeSymbol, const QStringList& searchDirs);

    /// Unloads the library.
    ~DllLoader() override;

    /// Calls the initialise function; null when there is none, when it returns null, or when it throws.
    void* instance(void* argument = nullptr);

    /// What was found out about the library when it was loaded.
    const ModuleInfo& info() const { return m_info; }

private:
    using InitFunction = void* (*)(void*);
    using FreeFunction = void (*)(void*);

    InitFunction m_init = nullptr;
    ModuleInfo m_info;
    FreeFunction m_free = nullptr; ///< kept for a module's own use; instances are released by their destructors
};
