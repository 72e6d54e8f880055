#include "Designer.h"

#include <cstring>

Designer::~Designer()
{
    delete m_window;
}

void Designer::attachEngine(IEngine* engine)
{
    m_engine = engine;
}

void Designer::openDesigner(QWidget* parent)
{
    if (!m_window)
        m_window = new DesignerWindow(m_engine, parent);
    if (m_window->isMinimized())
        m_window->showNormal();
    else
        m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void* Designer::extension(const char* id)
{
    if (std::strcmp(id, IDesignerEdits::id) == 0)
        return static_cast<IDesignerEdits*>(this);
    if (std::strcmp(id, IDesignerImage::id) == 0)
        return static_cast<IDesignerImage*>(this);
    return std::strcmp(id, IImageWatch::id) == 0 ? static_cast<IImageWatch*>(this) : nullptr;
}

QStringList Designer::unsaved()
{
    return m_window ? m_window->unsavedNames() : QStringList();
}

void Designer::hideDesigner()
{
    if (m_window)
        m_window->leave();
}

void Designer::openImage(QWidget* parent, const QString& solution, const QString& model, const QString& path)
{
    openDesigner(parent);
    m_window->tryImage({solution, model}, path);
}

void Designer::imageCaptured(const QString& cameraKey, const QImage& image)
{
    if (m_window && m_window->isVisible())
        m_window->showCaptured(cameraKey, image);
}
