#include "CellCalibration.h"

#include "config/ksGlobalConfig.h"

#include <QDir>

namespace {

/// Inverse of X = px scale + xOffset, Y = py scale + yOffset, swapped at the end.
std::optional<QPointF> fromTwoPoint(const StationConfig& station, QPointF point)
{
    const TwoPointCalibration& calibration = station.twoPoint;
    if (calibration.scale == 0)
        return {};
    if (station.swapXY)
        point = point.transposed();
    return (point - QPointF(calibration.xOffset, calibration.yOffset)) / calibration.scale;
}

/// Inverse of the affine map; the offsets belong to X and Y after the swap of the mapped point's axes.
std::optional<QPointF> fromFourPoint(const FourPointCalibration& calibration, QPointF point)
{
    if (calibration.swapXY)
        point = point.transposed();
    const auto& m = calibration.map;
    const QPointF q = point - QPointF(calibration.xOffset + m[2], calibration.yOffset + m[5]);
    const double determinant = m[0] * m[4] - m[1] * m[3];
    if (determinant == 0)
        return {};
    return QPointF(m[4] * q.x() - m[1] * q.y(), m[0] * q.y() - m[3] * q.x()) / determinant;
}

} // namespace

bool CellCalibration::load(const QString& home, QString* error)
{
    if (!QDir(home).exists()) {
        *error = QStringLiteral("%1: no such folder").arg(home);
        return false;
    }
    qputenv("VALVECELL_HOME", QDir(home).absolutePath().toUtf8());
    return ksGlobalConfig::instance()->load(error);
}

std::optional<QPointF> CellCalibration::pixelOf(int station, QPointF point)
{
    const ksGlobalConfig* config = ksGlobalConfig::instance();
    const StationConfig& calibration = config->station(station);
    return config->use4pointstand ? fromFourPoint(calibration.fourPoint, point) : fromTwoPoint(calibration, point);
}
