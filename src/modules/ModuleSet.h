#pragma once

#include "modules/IModules.h"

#include <memory>

class CDllCoreCtrl;
class CDllDesigner;
class CDllEngine;

/// The modules as libraries that are loaded at run time. GUI thread. Deleting it takes them down in reverse order.
class ModuleSet : public IModules
{
public:
    /// `searchDirs`: where the core control, engine and designer are looked for; empty for the platform's places.
    explicit ModuleSet(QStringList searchDirs = {});
    ~ModuleSet() override;
    Q_DISABLE_COPY(ModuleSet)

    QString start(const CameraCallbacks& cameras) override;
    void stop() override;
    ISerialPort* createSerialPort() override;
    IUserCtrl* createUserCtrl() override;
    ICoreCtrl* coreCtrl() const override;
    IEngine* engine() const override;
    IDesigner* designer() const override;
    QVector<ModuleInfo> report() const override;

private:
    /// Each returns the text of the fatal message, empty when its module runs.
    QString startCoreCtrl(const CameraCallbacks& callbacks);
    QString startEngine();
    QString startDesigner();

    QStringList m_searchDirs;
    std::unique_ptr<CDllCoreCtrl> m_coreCtrl;
    std::unique_ptr<CDllEngine> m_engine;
    std::unique_ptr<CDllDesigner> m_designer;
    QVector<ModuleInfo> m_optional;
};
