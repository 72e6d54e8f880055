#include "modules/CDllDesigner.h"

#include "modules/DllLoader.h"

#include <valvecell/IDesigner.h>

CDllDesigner::CDllDesigner(const QStringList& searchDirs)
{
    m_loader =
        std::make_unique<DllLoader>(QStringLiteral("ksdesigner"), "Lib_Designer_Init", "Lib_Designer_Free", searchDirs);
    m_instance = static_cast<IDesigner*>(m_loader->instance());
    if (!m_instance)
        qDebug("failed to get instance from kxCoreCtrl.dll"); // kept: the same text as of the core control
}

CDllDesigner::~CDllDesigner()
{
    delete m_instance;
}
