#pragma once

#include <QString>

#include <optional>

/// Whole numbers as people type them: blanks around them and full-width digits and signs count. Pure functions.
namespace WholeNumber {

/// Full-width letters, digits and signs as plain ones.
QString halfWidth(QString text);

/// The number that the text is; nothing for any other text. A number beyond 18 digits counts as one of 19, so that it
/// is told as too large and never wraps.
std::optional<qint64> parse(const QString& text);

/// Why the text is no number from `low` to `high`, in the operator's language; empty when it is one.
QString problem(const QString& text, int low, int high);

} // namespace WholeNumber
