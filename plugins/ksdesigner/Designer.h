#pragma once

#include "DesignerWindow.h"

#include <valvecell/IDesigner.h>

#include <QPointer>

/// The bundled designer: one window, made when it is first opened and kept while it is closed. Its parent may delete it
/// at any time.
class Designer : public IDesigner
{
public:
    ~Designer() override;

    void attachEngine(IEngine* engine) override;
    void openDesigner(QWidget* parent) override;

    /// The window, or null before openDesigner() and after its parent was deleted.
    DesignerWindow* window() const { return m_window; }

private:
    IEngine* m_engine = nullptr;
    QPointer<DesignerWindow> m_window;
};
