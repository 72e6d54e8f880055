#pragma once

#include <QtGlobal>

/// Marks a function that is found by its plain name in a library loaded at run time.
#define VALVECELL_MODULE_EXPORT extern "C" Q_DECL_EXPORT
