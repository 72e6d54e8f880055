#pragma once

#include <QString>

/// Lines for the person or program that started this one; each is out when the call returns.
namespace Console {

void say(const QString& line);      ///< standard output
void complain(const QString& line); ///< standard error, with the program's name

} // namespace Console
