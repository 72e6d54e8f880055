#pragma once

#include <QList>

class QAction;
class QMainWindow;

/// Puts the parts of the operator's window together: its actions have their places among the workspaces, so that what
/// is wanted daily does not stand beside what is wanted once a year; state and alarms lead to them; the mode frames
/// all. `view` is the action of the view menu. Returns the actions of the window that somebody has to act upon.
QList<QAction*> furnishRooms(QMainWindow& window, QAction* view);
