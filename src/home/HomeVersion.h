#pragma once

#include <QString>

#include <functional>
#include <vector>

/// Which form the files of a home have, kept in "user/home.json" below it. Before anything else of the home is used.
namespace HomeVersion {

/// The form that this program reads and writes.
constexpr int current = 1;

/// Brings a home from the version before to its own; returns what went wrong, and may be done again then.
struct Migration
{
    int version = 0;
    std::function<QString(const QString& home)> run;
};

/// The version of a home; 0 of one from before there were versions, the current one of an empty folder.
int of(const QString& home);

/// Records the version that a home has.
bool record(const QString& home, int version, QString* error);

/// The sentence with which a home of a newer program is refused.
QString newerText(const QString& home);

/// Makes a home fit for this program: finishes a restoration that was begun, migrates an older home after keeping a
/// backup of its set-up in "backups/", and records the version. Returns why the home cannot be used, in the operator's
/// language; nothing has been written then to a home that is newer.
QString enter(const QString& home, const std::vector<Migration>& migrations = {});

} // namespace HomeVersion
