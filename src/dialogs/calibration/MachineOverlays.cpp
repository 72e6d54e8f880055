#include "dialogs/calibration/MachineOverlays.h"

#include <QLineF>

#include <cmath>

std::vector<std::unique_ptr<ViewOverlay>> machineOverlays(const QTransform& toMachine)
{
    std::vector<std::unique_ptr<ViewOverlay>> overlays;
    bool usable = false;
    const QTransform toPixels = toMachine.inverted(&usable);
    if (!usable || !std::isfinite(toMachine.determinant()) || !std::isfinite(toPixels.determinant()))
        return overlays;
    const QLineF x = toPixels.map(QLineF(0, 0, 1, 0));
    const QLineF y = toPixels.map(QLineF(0, 0, 0, 1));
    overlays.push_back(std::make_unique<AxesOverlay>(x.p2() - x.p1(), y.p2() - y.p1()));
    overlays.push_back(std::make_unique<ScaleBarOverlay>(toMachine.map(QLineF(0, 0, 1, 0)).length()));
    return overlays;
}
