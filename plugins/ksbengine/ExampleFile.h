#pragma once

#include "finder/HoleExamples.h"

#include <QJsonObject>

/// The file of a model's examples: a JSON object with the lists "holes" and "rejected", each patch a PNG in base64.
/// Any thread, as long as one thread at a time uses a file.
namespace ExampleFile {

/// One example as an entry of the lists.
QJsonObject entryOf(const finder::HoleExample& example);
/// False, with the reason, when the entry lacks a value, a value is no positive size, or the patch is no picture of
/// patchSide x patchSide pixels.
bool readEntry(const QJsonObject& entry, finder::HoleExample* example, QString* error);

/// Reads what can be read; of a missing file, nothing. `error` names file and place of what cannot, and stays empty
/// otherwise.
finder::HoleExamples read(const QString& path, QString* error);

/// Replaces the file in one step; without examples it is removed.
bool write(const QString& path, const finder::HoleExamples& examples, QString* error);

} // namespace ExampleFile
