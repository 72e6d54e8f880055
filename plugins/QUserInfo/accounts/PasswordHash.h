#pragma once

#include <QByteArray>
#include <QString>

/// Argon2id hashes of passwords, in the library's own text form. Making and checking one takes some 60 ms and 64 MB, so
/// neither belongs on the GUI thread. Any thread.
namespace PasswordHash {

/// A new hash with its own salt; empty when there is not memory enough.
QByteArray make(const QString& password);

bool matches(const QByteArray& hash, const QString& password);

/// Whether a text read from a file is such a hash, and one whose check costs no more than a bearable time and memory.
bool isWellFormed(const QByteArray& hash);

} // namespace PasswordHash
