#include "dialogs/calibration/CalibrationDesk.h"

#include "config/ksGlobalConfig.h"

#include <utility>

CalibrationDesk::Applied CalibrationDesk::putIntoForce(int station, CalibrationHistory::Kind kind,
                                                       const StationConfig& wanted, const QString& user)
{
    ksGlobalConfig& global = *ksGlobalConfig::instance();
    const CalibrationHistory history(station, kind);
    const QByteArray before = global.text();
    StationConfig& own = global.station(station);
    Applied applied;
    applied.station = history.restored(own, history.valuesOf(wanted));
    const StationConfig former = std::exchange(own, applied.station);
    if (global.save(&applied.unsaved))
        history.add(former, applied.station, user, &applied.unrecorded);
    applied.changes = jsonChanges(before, global.text());
    return applied;
}
