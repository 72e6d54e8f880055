#pragma once

#include <QStringList>

/// Names that a person, or a file system, takes for one another: they differ in case, in full and half width, in
/// blanks, in characters that nobody sees, or in dots and blanks at the end. Whoever is given a new name refuses one
/// that looks like a name that is there. Pure functions, any thread.
namespace LookAlike {

/// The same text for all names that look alike.
QString form(const QString& name);

/// The first of the names that looks like this one; empty when none does.
QString find(const QStringList& names, const QString& name);

/// Whether the name holds a character that is not seen, such as a zero-width blank.
bool hasInvisible(const QString& name);

} // namespace LookAlike
