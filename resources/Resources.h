#pragma once

#include <QtGlobal>

/// Makes the pictures of the program known. They lie in a static library, which the linker would otherwise leave out.
/// Call it before the first picture is used; calling it again is harmless.
inline void initResources()
{
    Q_INIT_RESOURCE(valvecell);
}
