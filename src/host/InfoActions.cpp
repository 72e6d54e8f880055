#include "host/InfoActions.h"

#include "dialogs/about/QAboutUI.h"
#include "dialogs/help/QHelpUI.h"
#include "dialogs/plcmonitor/QPlcMonitorUI.h"
#include "host/ShowDialog.h"

#include <QCoreApplication>
#include <QMainWindow>

InfoActions::InfoActions(QMainWindow* window, const PlcLink& link)
    : QObject(window)
    , m_window(window)
    , m_link(link)
{
}

void InfoActions::trigger(const QString& name)
{
    if (name == QLatin1String("actionPlc"))
        openMonitor();
    else if (name == QLatin1String("actionHelp"))
        openHelp();
    else if (name == QLatin1String("actionAbout"))
        openAbout();
}

void InfoActions::openMonitor()
{
    if (!m_monitor)
        m_monitor = new QPlcMonitorUI(m_link, m_window);
    showDialog(m_monitor);
}

void InfoActions::openHelp()
{
    if (!m_help)
        m_help = new QHelpUI(QCoreApplication::applicationDirPath() + QStringLiteral("/docs"), m_window);
    showDialog(m_help);
}

void InfoActions::openAbout()
{
    if (!m_about)
        m_about = new QAboutUI(m_window);
    showDialog(m_about);
}
