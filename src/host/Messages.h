#pragma once

#include <QStringList>

class QWidget;

/// The modal boxes of the main window. GUI thread; each returns when it is closed.
namespace messages {

/// Why the program cannot go on; the caller ends the process afterwards.
void fatal(const QString& text);

/// The serial port could not be opened; the program goes on without it.
void portNotOpen(QWidget* parent, const QString& port, const QString& baudRate);

/// The module behind an action is not there.
void notEnabled();

/// Asks whether the user of that name is to be logged out.
bool confirmLogOut(QWidget* parent, const QString& user);

/// Asks whether the running system is really to be closed.
bool confirmClose(QWidget* parent);

/// Asks whether the program is to be closed although unsaved changes of these models would be lost.
bool confirmLoss(QWidget* parent, const QStringList& models);

} // namespace messages
