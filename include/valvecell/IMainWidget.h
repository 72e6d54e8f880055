#pragma once

#include <QObject>

/// The program as a host process sees it: load the library "valvecell", resolve the two functions below, make one
/// object, show it, run the event loop, give it back.
///
/// Threads: everything is called from the GUI thread, with a QApplication in place.
class IMainWidget : public QObject
{
public:
    IMainWidget()
        : QObject(nullptr)
    {
    }

    /// Shows the main window maximised.
    virtual void showMaximized() = 0;
};

/// The signature of "MainWidget_Create". Runs the whole start-up and returns the object, which the host owns. A
/// start-up that cannot go on shows its reason and ends the process with exit code 0; of a host that has chosen so
/// (HostChoice.h) it returns null instead, with the reason. Null also while the object of an earlier call is not given
/// back: there is one program in a process.
using MainWidgetCreateFunction = IMainWidget* (*)();

/// The signature of "MainWidget_Delete". Takes the program down and frees the object; does nothing with null. Returns
/// when all of the program's threads have ended; style, palette, message handler and working directory are then as they
/// were, and a new object may be made.
using MainWidgetDeleteFunction = void (*)(IMainWidget* widget);
