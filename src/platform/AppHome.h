#pragma once

#include <QString>

namespace platform {

/// The home: the one directory below which all files of the program lie. The environment variable VALVECELL_HOME
/// names it; without it, it is the application's directory. Absolute, with forward slashes, no separator at the end.
/// Read anew at each call, so a host (or a test) may set the variable before it loads the library.
QString home();

/// `home()` joined with one of the system's path texts, such as "/user/plcIndex.json" or "\\DBFiles": the text is
/// appended as it stands, and `\` is a separator on every platform.
QString inHome(const QString& pathText);

} // namespace platform
