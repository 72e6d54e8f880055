#include "host/ksMain.h"
#include "platform/System.h"

#include <valvecell/Export.h>
#include <valvecell/HomeFiles.h>

VALVECELL_MODULE_EXPORT IMainWidget* MainWidget_Create()
{
    HomeFiles::fixHome();
    platform::keepOthersOut();
    platform::keepThisLibrary();
    return new ksMain;
}

VALVECELL_MODULE_EXPORT void MainWidget_Delete(IMainWidget* widget)
{
    delete widget;
}
