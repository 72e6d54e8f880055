#include "modules/DllModules.h"

#include <valvecell/ICoreCtrl.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IEngine.h>

template <typename Interface>
DllModule<Interface>::DllModule(const QString& name, const char* initSymbol, const char* freeSymbol,
                                const QStringList& searchDirs)
    : m_loader(name, initSymbol, freeSymbol, searchDirs)
    , m_instance(static_cast<Interface*>(m_loader.instance()))
{
}

template <typename Interface>
DllModule<Interface>::~DllModule() = default;

template class DllModule<ICoreCtrl>;
template class DllModule<IEngine>;
template class DllModule<IDesigner>;

CDllCoreCtrl::CDllCoreCtrl(const QStringList& searchDirs)
    : DllModule(QStringLiteral("ksCoreCtrl"), "Lib_CoreCtrl_Init", "Lib_CoreCtrl_Free", searchDirs)
{
    bringUp([](ICoreCtrl& core) { core.start(); });
    if (!instance())
        qDebug("failed to get instance from kxCoreCtrl.dll"); // spelled so: plants search their logs for it
}

CDllCoreCtrl::~CDllCoreCtrl()
{
    if (instance())
        callModule(loader().fileName(), [this] { instance()->stop(); });
}

CDllEngine::CDllEngine(const QStringList& searchDirs)
    : DllModule(QStringLiteral("ksbengine"), "Lib_Engine_Init", "Lib_Engine_Free", searchDirs)
{
    bringUp([](IEngine& engine) { engine.initialise(); });
    if (!instance())
        qWarning("failed to get instance from ksbengine");
}

CDllDesigner::CDllDesigner(const QStringList& searchDirs)
    : DllModule(QStringLiteral("ksdesigner"), "Lib_Designer_Init", "Lib_Designer_Free", searchDirs)
{
    if (!instance())
        qDebug("failed to get instance from kxCoreCtrl.dll"); // kept: the same text as of the core control
}
