#pragma once

#include "modules/DllLoader.h"

#include <QObject>

#include <memory>

class ICoreCtrl;
class IDesigner;
class IEngine;

/// The modules that the program cannot run without, each with the one instance that it gives: a class loads its module
/// when it is made, and deletes the instance, then unloads the module, when it goes. A log line says what fails. GUI
/// thread.

/// What they have in common.
template <typename Interface>
class DllModule
{
public:
    /// The instance, or null when there is none.
    Interface* instance() const { return m_instance.get(); }
    const DllLoader& loader() const { return m_loader; }

protected:
    /// Loads the module and makes its instance.
    DllModule(const QString& name, const char* initSymbol, const char* freeSymbol, const QStringList& searchDirs);
    ~DllModule();
    Q_DISABLE_COPY(DllModule)

    /// Calls into a new instance; one that throws is deleted, since half of one could not be asked for anything.
    template <typename Call>
    void bringUp(Call call)
    {
        if (m_instance && !callModule(m_loader.fileName(), [&] { call(*m_instance); }))
            m_instance.reset();
    }

private:
    DllLoader m_loader;
    std::unique_ptr<Interface> m_instance; ///< goes before its library
};

/// The core-control module "ksCoreCtrl", started; stopped before it goes.
class CDllCoreCtrl : public DllModule<ICoreCtrl>
{
public:
    explicit CDllCoreCtrl(const QStringList& searchDirs);
    ~CDllCoreCtrl();
};

/// The engine module "ksbengine", initialised.
class CDllEngine : public DllModule<IEngine>
{
public:
    explicit CDllEngine(const QStringList& searchDirs);
};

/// The designer module "ksdesigner".
class CDllDesigner : public QObject, public DllModule<IDesigner>
{
    Q_OBJECT

public:
    explicit CDllDesigner(const QStringList& searchDirs);
};
