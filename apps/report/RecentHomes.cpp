#include "RecentHomes.h"

#include <QSettings>

#include <memory>

namespace {

constexpr int mostHomes = 8;
const QString homesKey = QStringLiteral("homes");

std::unique_ptr<QSettings> ownSettings()
{
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("ValveCell"),
                                       QStringLiteral("Report"));
}

} // namespace

QStringList RecentHomes::list()
{
    return ownSettings()->value(homesKey).toStringList();
}

void RecentHomes::opened(const QString& home)
{
    QStringList homes = list();
    homes.removeAll(home);
    homes.prepend(home);
    ownSettings()->setValue(homesKey, QStringList(homes.mid(0, mostHomes)));
}
