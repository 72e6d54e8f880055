#pragma once

#include "modules/ModuleReport.h"

#include <valvecell/ICoreCtrl.h>

#include <QVector>

#include <memory>

class CDllCoreCtrl;
class CDllDesigner;
class CDllEngine;
class IDesigner;
class IEngine;
class ISerialPort;
class IUserCtrl;

/// The modules of the program and their start order. GUI thread. Deleting it takes them down in reverse order.
class ModuleSet
{
public:
    /// `searchDirs`: where the core control, engine and designer are looked for; empty for the platform's places.
    explicit ModuleSet(QStringList searchDirs = {});
    ~ModuleSet();
    Q_DISABLE_COPY(ModuleSet)

    /// Starts core control, engine and designer, in this order; what runs already is left alone. `image` receives the
    /// cameras' images on the module's threads. Returns the text of the fatal message, empty when all is well.
    QString start(const ICoreCtrl::ImageCallback& image);

    /// Loads the optional modules; null when the library or its symbol is missing. The caller owns the object.
    ISerialPort* createSerialPort();
    IUserCtrl* createUserCtrl();

    /// All modules that were to be loaded so far, in the order of the start-up.
    QVector<ModuleInfo> report() const;

    /// Takes down the core control, so that no more images arrive, then the designer and the engine.
    void stop();

    ICoreCtrl* coreCtrl() const;
    IEngine* engine() const;
    IDesigner* designer() const;

private:
    /// Each returns the text of the fatal message, empty when its module runs.
    QString startCoreCtrl(const ICoreCtrl::ImageCallback& image);
    QString startEngine();
    QString startDesigner();

    QStringList m_searchDirs;
    std::unique_ptr<CDllCoreCtrl> m_coreCtrl;
    std::unique_ptr<CDllEngine> m_engine;
    std::unique_ptr<CDllDesigner> m_designer;
    QVector<ModuleInfo> m_optional;
};
