#include "host/WindowRooms.h"

#include "panels/AlarmStrip.h"
#include "shell/ModeFrame.h"
#include "shell/StateBar.h"
#include "shell/Workspaces.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>

namespace {

struct Place
{
    Workspaces::Room room;
    const char* action;
};

// The first action of a room is what the room opens with.
constexpr Place places[] = {
    {Workspaces::Results, "actionResults"},
    {Workspaces::Results, "action_Check"},
    {Workspaces::Results, "actionAlarms"},
    {Workspaces::Models, "actionManage"},
    {Workspaces::Models, "actionIndexTable"},
    {Workspaces::Models, "actionSetting"},
    {Workspaces::Models, "actionTeach"},
    {Workspaces::Models, "actionLibrary"},
    {Workspaces::Calibration, "actionStandard"},
    {Workspaces::Calibration, "actionGuide"},
    {Workspaces::System, "actionSystem"},
    {Workspaces::System, "actionCamera"},
    {Workspaces::System, "actionDevice"},
    {Workspaces::System, "actionPlc"},
    {Workspaces::System, "actionLog"},
    {Workspaces::System, "actionBackup"},
    {Workspaces::System, "actionAssistant"},
    {Workspaces::System, "main_Login_action"},
    {Workspaces::System, "main_action_userManager"},
    {Workspaces::System, "actionRegister"},
    {Workspaces::System, "actionAbout"},
};

} // namespace

QList<QAction*> furnishRooms(QMainWindow& window, QAction* view)
{
    QList<QAction*> actions;
    const auto action = [&](const char* name) {
        actions << window.findChild<QAction*>(QLatin1String(name));
        return actions.last();
    };
    auto& rooms = *window.findChild<Workspaces*>();
    rooms.setRun(window.findChild<QWidget*>(QStringLiteral("runPage")));
    for (const Place& place : places)
        rooms.addAction(place.room, action(place.action));
    rooms.addTool(action("actionTest"));
    rooms.addTool(view);
    rooms.addTool(action("actionHelp"));
    window.addAction(view); // whose icon goes with the look
    const auto* state = window.findChild<StateBar*>();
    QObject::connect(state, &StateBar::pageWanted, &rooms, &Workspaces::actionWanted);
    auto* alarms = window.findChild<AlarmStrip*>();
    QObject::connect(alarms, &AlarmStrip::actionWanted, &rooms, &Workspaces::actionWanted);
    QObject::connect(&rooms, &Workspaces::roomChanged, alarms,
                     [alarms](Workspaces::Room room) { alarms->setFolded(room != Workspaces::Run); });
    new ModeFrame(&window, *state, *window.findChild<QLabel*>(QStringLiteral("modeBand")));
    return actions;
}
