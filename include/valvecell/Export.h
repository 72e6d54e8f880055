#pragma once

#include "QtMajor.h"

#include <QtGlobal>

/// Marks a function that is found by its plain name in a library loaded at run time.
#define VALVECELL_MODULE_EXPORT extern "C" Q_DECL_EXPORT

/// The interfaces of these headers, MAJOR.MINOR. Another MAJOR: an interface has other virtual functions, so that a
/// module built for it cannot be used. Another MINOR: something optional was added.
#define VALVECELL_INTERFACE_VERSION "1.1"

/// Tells a module's version to the device manager, and to the loader the interfaces that the module was built for;
/// optional, once in a module: VALVECELL_MODULE_VERSION("1.2.0")
/// Exports them by the symbols "Lib_Version" and "Lib_InterfaceVersion".
#define VALVECELL_MODULE_VERSION(text)                                                                                 \
    VALVECELL_MODULE_EXPORT const char* Lib_Version()                                                                  \
    {                                                                                                                  \
        return text;                                                                                                   \
    }                                                                                                                  \
    VALVECELL_MODULE_EXPORT const char* Lib_InterfaceVersion()                                                         \
    {                                                                                                                  \
        return VALVECELL_INTERFACE_VERSION;                                                                            \
    }
