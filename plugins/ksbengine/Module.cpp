#include "Engine.h"

#include <valvecell/Export.h>
#include <valvecell/HomeFiles.h>

VALVECELL_MODULE_EXPORT IEngine* Lib_Engine_Init(void* reserved)
{
    Q_UNUSED(reserved)
    return new Engine(HomeFiles::home() + QStringLiteral("/user/solutions"));
}

VALVECELL_MODULE_EXPORT void Lib_Engine_Free(IEngine* engine)
{
    delete engine;
}
