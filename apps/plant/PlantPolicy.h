#pragma once

#include <QString>

class Database;

/// What the plant decides for itself, in its database. Throws std::runtime_error with a sentence for the user when a
/// text cannot be used; then nothing is changed.
namespace PlantPolicy {

/// "06:00, 14:00, 22:00".
void setShifts(Database& database, const QString& text);
/// "part=24,picture=3": months; what is not named stays.
void setRetention(Database& database, const QString& text);

} // namespace PlantPolicy
