#include "Harness.h"
#include "dialogs/calibration/CalibrationHistory.h"

FUZZ_TARGET(calibrations)
{
    fuzz::homeFile("/user/calibrations.jsonl", bytes);
    for (const auto kind : {CalibrationHistory::Kind::TwoPoint, CalibrationHistory::Kind::FourPoint}) {
        const CalibrationHistory history(1, kind);
        for (const AppliedCalibration& applied : history.read()) {
            const StationConfig station = history.restored({}, applied.values);
            fuzz::require(history.valuesOf(station) == applied.values, "what is offered can be put back");
        }
    }
}
