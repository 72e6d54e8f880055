#include "modules/CDllEngine.h"

#include "modules/DllLoader.h"
#include "modules/ModuleCall.h"

#include <valvecell/IEngine.h>

/// An engine that throws while it initialises is deleted: half of one could not be asked for anything.
CDllEngine::CDllEngine(const QStringList& searchDirs)
{
    m_loader =
        std::make_unique<DllLoader>(QStringLiteral("ksbengine"), "Lib_Engine_Init", "Lib_Engine_Free", searchDirs);
    m_instance = static_cast<IEngine*>(m_loader->instance());
    if (m_instance && !callModule(m_loader->fileName(), [this] { m_instance->initialise(); })) {
        delete m_instance;
        m_instance = nullptr;
    }
    if (!m_instance)
        qWarning("failed to get instance from ksbengine");
}

CDllEngine::~CDllEngine()
{
    delete m_instance;
}
