#include "modules/CDllCoreCtrl.h"

#include "modules/DllLoader.h"
#include "modules/ModuleCall.h"

#include <valvecell/ICoreCtrl.h>

CDllCoreCtrl::CDllCoreCtrl(const QStringList& searchDirs)
    : m_searchDirs(searchDirs)
{
    m_loader = std::make_unique<DllLoader>(QStringLiteral("ksCoreCtrl"), "Lib_CoreCtrl_Init", "Lib_CoreCtrl_Free",
                                           m_searchDirs);
    m_instance = static_cast<ICoreCtrl*>(m_loader->instance());
    if (m_instance && !callModule(m_loader->fileName(), [this] { m_instance->start(); })) {
        delete m_instance;
        m_instance = nullptr;
    }
    if (!m_instance)
        qDebug("failed to get instance from kxCoreCtrl.dll"); // spelled so: plants search their logs for it
}

CDllCoreCtrl::~CDllCoreCtrl()
{
    if (m_instance)
        callModule(m_loader->fileName(), [this] { m_instance->stop(); });
    delete m_instance;
}
