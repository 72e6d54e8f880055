#pragma once

#include <QStringList>

class QWidget;

/// The modal boxes of the main window. GUI thread; each but portNotOpen() returns when it is closed.
namespace messages {

/// Why the program cannot go on; the caller ends the process afterwards.
void fatal(const QString& text, const QString& details);

/// A second program in the same process is refused so.
QString alreadyRuns();

/// The serial port could not be opened. Returns at once: the cell runs, and the line comes by itself. Of an unattended
/// program a line in the log.
void portNotOpen(QWidget* parent, const QString& port, const QString& baudRate);

/// The module behind an action is not there.
void notEnabled();

/// Asks whether the user of that name is to be logged out.
bool confirmLogOut(QWidget* parent, const QString& user);

/// Asks whether the counts of the shift of that station are to begin anew.
bool confirmShiftReset(QWidget* parent, int station);

/// Asks whether the running system is really to be closed, and then, if there are any, although unsaved changes of
/// these models would be lost. Does not ask where nobody is who could answer: with an unattended program that is not
/// closed by hand.
bool confirmClose(QWidget* parent, const QStringList& unsavedModels, bool byHand);

} // namespace messages
