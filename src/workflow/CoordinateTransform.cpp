#include "workflow/CoordinateTransform.h"

#include "config/StationConfig.h"

QPointF affineMapped(const StationConfig& station, const QPointF& pixel)
{
    const auto& m = station.fourPoint.map;
    return {pixel.x() * m[0] + pixel.y() * m[1] + m[2], pixel.x() * m[3] + pixel.y() * m[4] + m[5]};
}

QPointF toMachine(const StationConfig& station, bool fourPoint, const QPointF& pixel)
{
    QPointF machine;
    bool swap;
    if (fourPoint) {
        machine = affineMapped(station, pixel) + QPointF(station.fourPoint.xOffset, station.fourPoint.yOffset);
        swap = station.fourPoint.swapXY;
    } else {
        const TwoPointCalibration& calibration = station.twoPoint;
        machine = pixel * calibration.scale + QPointF(calibration.xOffset, calibration.yOffset);
        swap = station.swapXY;
    }
    return swap ? machine.transposed() : machine;
}
