#pragma once

#include <QString>

/// Copies of databases that are in use. Any thread.
namespace DatabaseCopy {

/// Whether the file is an SQLite database, by its content.
bool isDatabase(const QString& file);

/// Copies a database as of one moment to a new file, whoever writes it meanwhile; false, with the reason, when it
/// cannot be read or the copy cannot be written.
bool make(const QString& from, const QString& to, QString* error);

} // namespace DatabaseCopy
