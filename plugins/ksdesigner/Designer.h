#pragma once

#include "DesignerWindow.h"

#include <valvecell/IDesigner.h>
#include <valvecell/IDesignerEdits.h>
#include <valvecell/IDesignerImage.h>
#include <valvecell/IImageWatch.h>

#include <QPointer>

/// The bundled designer: one window, made when it is first opened and kept while it is closed. Its parent may delete it
/// at any time.
class Designer : public IDesigner, public IDesignerEdits, public IDesignerImage, public IImageWatch
{
public:
    ~Designer() override;

    /// `engine` may be null: the window then says that there is none.
    void attachEngine(IEngine* engine) override;
    /// `parent` counts when the window is made; later calls only bring it to the front.
    void openDesigner(QWidget* parent) override;
    /// Offers IDesignerEdits, IDesignerImage and IImageWatch.
    void* extension(const char* id) override;

    QStringList unsaved() override;
    void hideDesigner() override;

    void openImage(QWidget* parent, const QString& solution, const QString& model, const QString& path) override;

    /// Dropped while the window is closed.
    void imageCaptured(const QString& cameraKey, const QImage& image) override;

    /// The window, or null before openDesigner() and after its parent was deleted.
    DesignerWindow* window() const { return m_window; }

private:
    IEngine* m_engine = nullptr;
    QPointer<DesignerWindow> m_window;
};
