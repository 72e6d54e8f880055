#pragma once

#include <QtGlobal>

/// Marks a function that is found by its plain name in a library loaded at run time.
#define VALVECELL_MODULE_EXPORT extern "C" Q_DECL_EXPORT

/// Tells a module's version to the device manager; optional, once in a module: VALVECELL_MODULE_VERSION("1.2.0")
/// Exports it by the symbol "Lib_Version".
#define VALVECELL_MODULE_VERSION(text)                                                                                 \
    VALVECELL_MODULE_EXPORT const char* Lib_Version()                                                                  \
    {                                                                                                                  \
        return text;                                                                                                   \
    }
