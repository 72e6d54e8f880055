#pragma once

#include <QStringList>

/// Where the program and its files lie.
namespace platform {

/// The home: the one directory below which all files of the program lie. The environment variable VALVECELL_HOME
/// names it; without it, it is the application's directory. Absolute, with forward slashes, no separator at the end.
/// Read anew at each call, so a host (or a test) may set the variable before it loads the library.
QString home();

/// `home()` joined with one of the system's path texts, such as "/user/plcIndex.json" or "\\DBFiles": the text is
/// appended as it stands, and `\` is a separator on every platform.
QString inHome(const QString& pathText);

/// The suffix of a module's file, ".dll" or ".so".
QString moduleSuffix();

/// `base` (a module's name, with or without a directory) as the name of its file: a ".dll" at the end, in any case,
/// counts as the suffix of every platform and is never doubled.
QString moduleFile(const QString& base);

/// The folder of the library or program that holds this code: what belongs to it lies beside, also when a host process
/// elsewhere has loaded the library.
QString programFolder();

/// Where modules are looked for before the platform's loader looks where it always does: the application's directory,
/// then programFolder().
QStringList moduleFolders();

/// `base` as the platform's loader is to be given it, without suffix: with a directory as it stands; without one, in
/// the first of moduleFolders() in which the file lies, otherwise bare, so that the loader looks where it always does.
QString moduleLoadName(const QString& base);

/// The file of a program of that name in a folder.
QString programFile(const QString& folder, const QString& name);

} // namespace platform
