#pragma once

#include <QObject>

class PlcLink;
class QAboutUI;
class QHelpUI;
class QMainWindow;
class QPlcMonitorUI;

/// The actions that only tell something: PLC monitor, user guide, about box. GUI thread.
class InfoActions : public QObject
{
    Q_OBJECT

public:
    /// The dialogs are children of `window`, made when they are first wanted.
    InfoActions(QMainWindow* window, const PlcLink& link);

public slots:
    /// Does what the action of that object name is for; an unknown name does nothing.
    void trigger(const QString& name);

private:
    void openMonitor();
    void openHelp();
    void openAbout();

    QMainWindow* m_window;
    const PlcLink& m_link;
    QPlcMonitorUI* m_monitor = nullptr;
    QHelpUI* m_help = nullptr;
    QAboutUI* m_about = nullptr;
};
