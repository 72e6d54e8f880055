#include "shell/WorkspaceRail.h"

#include "shell/ShellButton.h"

#include <QVBoxLayout>

WorkspaceRail::WorkspaceRail(QWidget* parent)
    : QFrame(parent)
    , m_rooms(new QVBoxLayout)
    , m_tools(new QVBoxLayout)
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->setSpacing(0);
    for (QVBoxLayout* part : {m_rooms, m_tools})
        part->setSpacing(2);
    column->addLayout(m_rooms);
    column->addStretch(1);
    column->addLayout(m_tools);
}

QToolButton* WorkspaceRail::add(QAction* action)
{
    auto* button = new ShellButton(action, this);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return button;
}

void WorkspaceRail::addRoom(QAction* action)
{
    m_buttons << add(action);
    m_rooms->addWidget(m_buttons.last());
}

void WorkspaceRail::addTool(QAction* action)
{
    m_tools->addWidget(add(action));
}

void WorkspaceRail::mark(int room)
{
    for (int i = 0; i < m_buttons.size(); ++i)
        ShellButton::mark(m_buttons[i], i == room);
}
