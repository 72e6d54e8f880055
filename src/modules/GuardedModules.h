#pragma once

#include "modules/CallWatch.h"
#include "modules/IModules.h"

#include <memory>

/// Modules whose calls pass a watch: those of their main interfaces, and of the optional ones that the road of a
/// trigger needs. GUI thread.
class GuardedModules : public IModules
{
public:
    /// `watch` outlives the modules and what they create.
    GuardedModules(std::unique_ptr<IModules> modules, CallWatch& watch);
    ~GuardedModules() override;

    QString start(const CameraCallbacks& cameras) override;
    void stop() override;
    ISerialPort* createSerialPort() override;
    /// Not guarded: it is a QObject, whose callers guard each call.
    IUserCtrl* createUserCtrl() override { return m_modules->createUserCtrl(); }
    ICoreCtrl* coreCtrl() const override;
    IEngine* engine() const override;
    IDesigner* designer() const override;
    QVector<ModuleInfo> report() const override { return m_modules->report(); }

private:
    class CoreCtrl;
    class Engine;
    class Designer;
    class Port;

    const std::unique_ptr<IModules> m_modules;
    CallWatch& m_watch;
    std::unique_ptr<CoreCtrl> m_coreCtrl;
    std::unique_ptr<Engine> m_engine;
    std::unique_ptr<Designer> m_designer;
};
