#pragma once

#include "common/AuditChange.h"
#include "dialogs/calibration/CalibrationHistory.h"

/// Puts a calibration into force: configuration, its file and the history of calibrations. GUI thread.
namespace CalibrationDesk {

struct Applied
{
    StationConfig station;
    AuditChanges changes; ///< keys of the configuration
    QString unsaved;      ///< why it was not saved; empty when it was
    QString unrecorded;   ///< why the history did not take it
};

/// Of `wanted` only the values of the calibration: the station may have got another model meanwhile.
Applied putIntoForce(int station, CalibrationHistory::Kind kind, const StationConfig& wanted, const QString& user);

} // namespace CalibrationDesk
