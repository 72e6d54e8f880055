#include "Designer.h"

#include <valvecell/Export.h>

VALVECELL_MODULE_EXPORT IDesigner* Lib_Designer_Init(void* reserved)
{
    Q_UNUSED(reserved)
    return new Designer;
}

VALVECELL_MODULE_EXPORT void Lib_Designer_Free(IDesigner* designer)
{
    delete designer;
}
