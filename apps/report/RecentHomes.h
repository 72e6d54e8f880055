#pragma once

#include <QStringList>

/// The homes that a user opened last, newest first; kept for this user of the machine, since a home may be read-only.
namespace RecentHomes {

QStringList list();
void opened(const QString& home);

} // namespace RecentHomes
