#pragma once

#include <QStringList>

#include <memory>

class DllLoader;
class IEngine;

/// The engine module "ksbengine" and its instance. GUI thread.
class CDllEngine
{
public:
    /// Loads the module, makes its instance and initialises it. What fails is told by a warning.
    explicit CDllEngine(const QStringList& searchDirs);
    /// Deletes the instance, then unloads the module.
    ~CDllEngine();
    Q_DISABLE_COPY(CDllEngine)

    /// The instance, or null when there is none.
    IEngine* instance() const { return m_instance; }
    const DllLoader& loader() const { return *m_loader; }

private:
    IEngine* m_instance = nullptr;
    std::unique_ptr<DllLoader> m_loader;
};
