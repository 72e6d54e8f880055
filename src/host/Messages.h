#pragma once

class QString;
class QWidget;

/// The modal boxes of the main window. GUI thread; each returns when it is closed.
namespace messages {

/// Why the program cannot go on; the caller ends the process afterwards.
void fatal(const QString& text);

/// The serial port could not be opened; the program goes on without it.
void portNotOpen(QWidget* parent, const QString& port, const QString& baudRate);

/// Asks whether the running system is really to be closed.
bool confirmClose(QWidget* parent);

} // namespace messages
