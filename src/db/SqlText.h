#pragma once

#include <QString>

/// What the databases can carry. The statements are composed without escaping, so every text that a person types is
/// checked here, in the dialog where it is typed, and refused with a message. Pure functions, any thread.
namespace SqlText {

/// Longest name of a model, in characters: the width of its column.
constexpr int maxNameLength = 60;

/// A single-line text such as a tip, a camera key or a type text, at most `maxLength` characters: no apostrophe, no
/// control character, no "%1"-like marker, whole characters only. Returns false with a message for the operator.
bool carries(const QString& text, QString* error, int maxLength = 256);

/// As carries(), for free text: line breaks and tabs are welcome.
bool carriesFreeText(const QString& text, QString* error, int maxLength = 4096);

/// As carries(), for a model name: it is not empty, not longer than its column, and can be a folder's name on every
/// platform, since the archive keeps a model's images under it; and every character of it is seen.
bool carriesModelName(const QString& name, QString* error);

/// The text with every character that a statement cannot carry replaced by one that looks alike; for texts that come
/// from a module and must not cost a record.
QString madeCarriable(QString text);

/// The name as a folder's name that is safe on every platform: characters that separate paths or are reserved become
/// '_', and no name is empty, hidden, a device, or longer than a file system takes.
QString folderName(const QString& name);

} // namespace SqlText
