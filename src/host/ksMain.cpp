#include "host/ksMain.h"

ksMain::ksMain() = default;

void ksMain::showMaximized()
{
    m_window.showMaximized();
}
