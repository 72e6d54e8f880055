#pragma once

#include <QObject>

#include <memory>

class DllLoader;
class IDesigner;

/// The designer module "ksdesigner" and its instance. GUI thread.
class CDllDesigner : public QObject
{
    Q_OBJECT

public:
    /// Loads the module and makes its instance. What fails is told by a debug line.
    explicit CDllDesigner(const QStringList& searchDirs);
    /// Deletes the instance, then unloads the module.
    ~CDllDesigner() override;

    /// The instance, or null when there is none.
    IDesigner* instance() const { return m_instance; }
    const DllLoader& loader() const { return *m_loader; }

private:
    std::unique_ptr<DllLoader> m_loader;
    IDesigner* m_instance = nullptr;
};
