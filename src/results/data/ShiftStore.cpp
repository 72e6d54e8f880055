#include "results/data/ShiftStore.h"

#include <valvecell/HomeFiles.h>

namespace {

const QString beginsKey = QStringLiteral("begins");

QString shiftFile(const QString& home)
{
    return home + QStringLiteral("/user/shifts.json");
}

} // namespace

Shifts ShiftStore::load(const QString& home)
{
    return Shifts::fromText(HomeFiles::readJson(shiftFile(home)).object.value(beginsKey).toString());
}

/// What is there but cannot be read is kept beside before it is replaced.
QString ShiftStore::store(const QString& home, const Shifts& shifts)
{
    const HomeFiles::JsonRead known = HomeFiles::readJson(shiftFile(home));
    if (known.state == HomeFiles::JsonRead::Damaged)
        HomeFiles::keepAside(shiftFile(home));
    QJsonObject values = known.object;
    values.insert(beginsKey, shifts.toText());
    QString error;
    HomeFiles::writeJson(shiftFile(home), values, &error);
    return error;
}
