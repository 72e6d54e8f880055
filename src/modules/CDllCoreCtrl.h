#pragma once

#include <QStringList>

#include <memory>

class DllLoader;
class ICoreCtrl;

/// The core-control module "ksCoreCtrl" and its instance. GUI thread.
class CDllCoreCtrl
{
public:
    /// Loads the module, makes its instance and starts it. What fails is told by a debug line.
    explicit CDllCoreCtrl(const QStringList& searchDirs);
    /// Stops and deletes the instance, then unloads the module.
    ~CDllCoreCtrl();
    Q_DISABLE_COPY(CDllCoreCtrl)

    /// The instance, or null when there is none.
    ICoreCtrl* instance() const { return m_instance; }
    const DllLoader& loader() const { return *m_loader; }

private:
    std::unique_ptr<DllLoader> m_loader;
    ICoreCtrl* m_instance = nullptr;
    QStringList m_searchDirs;
};
