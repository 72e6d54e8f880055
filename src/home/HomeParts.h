#pragma once

#include <QFlags>
#include <QStringList>

#include <optional>

/// What a home consists of, as a person chooses from it for a backup. Any thread.
namespace HomeParts {

enum Part {
    Settings = 1,    ///< settings, cameras, PLC indices, users
    Models = 2,      ///< the model library and the engine's solutions
    Calibration = 4, ///< calibrations, their history and reference images
    Results = 8,     ///< databases of results and log
    Pictures = 16    ///< the image archive
};
Q_DECLARE_FLAGS(Set, Part)

constexpr int everything = Settings | Models | Calibration | Results | Pictures;

/// All parts, in the order in which they are shown.
QVector<Part> all();
/// As in "settings", for command lines and archives.
QString name(Part part);
QStringList names(Set parts);
/// Nothing for a name that there is not.
std::optional<Set> parse(const QStringList& names);

/// The parts to which a file belongs, by its path below the home with "/"; none for what is in no backup: the licence,
/// which is bound to the machine, locks, files kept aside, and the companions of a database.
Set of(const QString& path);

/// The files of any of these parts, as paths below the home, in plain order. Links are not followed.
QStringList files(const QString& home, Set parts);

/// Whether a path from elsewhere is one that such a list could hold: it leads nowhere but below the home.
bool isPlain(const QString& path);

} // namespace HomeParts

Q_DECLARE_OPERATORS_FOR_FLAGS(HomeParts::Set)
