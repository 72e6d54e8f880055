#include "Designer.h"

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
