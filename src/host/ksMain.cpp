#include "host/ksMain.h"

#include <valvecell/HostChoice.h>

#include <QEvent>

ksMain::ksMain()
{
    m_window.installEventFilter(this);
}

ksMain::~ksMain()
{
    m_window.removeEventFilter(this); // what closes now, the host closes itself
}

bool ksMain::eventFilter(QObject* window, QEvent* event)
{
    const bool closed = event->type() == QEvent::Hide && !event->spontaneous(); // a minimised window hides by itself
    if (closed && window == &m_window)
        HostChoice::noteClosed();
    return IMainWidget::eventFilter(window, event);
}

void ksMain::showMaximized()
{
    m_window.showMaximized();
}
