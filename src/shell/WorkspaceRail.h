#pragma once

#include <QFrame>
#include <QVector>

class QAction;
class QToolButton;
class QVBoxLayout;

/// The column with a button for each workspace, and below them a few that are wanted everywhere. GUI thread.
class WorkspaceRail : public QFrame
{
    Q_OBJECT

public:
    explicit WorkspaceRail(QWidget* parent = nullptr);

    /// Another workspace at the end of the column; the action's shortcut is shown below its text.
    void addRoom(QAction* action);
    /// A button at the foot of the column.
    void addTool(QAction* action);
    /// Marks the room that is on the screen; -1 for none.
    void mark(int room);

private:
    QToolButton* add(QAction* action);

    QVBoxLayout* m_rooms;
    QVBoxLayout* m_tools;
    QVector<QToolButton*> m_buttons;
};
