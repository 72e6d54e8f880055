#include "guided/library/ModelUse.h"

#include "db/PartTable.h"
#include "results/data/PartReader.h"

QHash<QString, ModelUse> ModelUse::read(PartReader& reader, const PartFilter& filter)
{
    const PartSeries parts = reader.series(filter, PartSeries::Uids | PartSeries::Models);
    QVector<ModelUse> uses(parts.models.size());
    for (int i = 0; i < parts.size(); ++i) {
        if (parts.model[i] < 0 || parts.model[i] >= uses.size())
            continue;
        ModelUse& use = uses[parts.model[i]];
        use.last = parts.uid[i];
        use.lastSeen = PartTable::timeOf(parts.wall[i]);
        const auto outcome = PartOutcome(parts.outcome[i]);
        use.found += outcome == PartOutcome::Found ? 1 : 0;
        use.judged += outcome == PartOutcome::Refused ? 0 : 1;
    }
    QHash<QString, ModelUse> all;
    for (int i = 0; i < uses.size(); ++i) {
        if (uses[i].last > 0)
            all.insert(parts.models[i], uses[i]);
    }
    return all;
}
