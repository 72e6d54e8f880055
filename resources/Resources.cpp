#include "Resources.h"

#include <QtGlobal>

void initResources()
{
    Q_INIT_RESOURCE(valvecell);
}
