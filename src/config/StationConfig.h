#pragma once

#include "common/Calibration.h"
#include "config/ConfigVisitors.h"

#include <QPoint>
#include <QPointF>
#include <QString>

#include <array>

/// Two-point calibration of a station: a scale and offsets.
struct TwoPointCalibration
{
    QPoint point1{0, 0}; ///< image pixels
    QPoint point2{100, 100};
    double length = 1000.0; ///< real distance between the points, millimetres
    double scale = 1.0;     ///< millimetres per pixel
    double xOffset = 0.0;   ///< millimetres
    double yOffset = 0.0;

    /// Its keys for station 1 or 2, see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor, int station)
    {
        const TwoPointCalibration fallback;
        visitor.field({"point1_x_#", station}, point1.rx(), fallback.point1.x());
        visitor.field({"point1_y_#", station}, point1.ry(), fallback.point1.y());
        visitor.field({"point2_x_#", station}, point2.rx(), fallback.point2.x());
        visitor.field({"point2_y_#", station}, point2.ry(), fallback.point2.y());
        visitor.field({"length_#", station}, length, fallback.length);
        visitor.field({CalibrationKeys::scale, station}, scale, fallback.scale);
        visitor.field({CalibrationKeys::xOffset, station}, xOffset, fallback.xOffset);
        visitor.field({CalibrationKeys::yOffset, station}, yOffset, fallback.yOffset);
    }
};

/// Four-point calibration of a station: an affine map and offsets.
struct FourPointCalibration
{
    bool swapXY = false;               ///< swap X and Y after the map
    std::array<QPoint, 4> pixelPoints; ///< image pixels
    std::array<QPointF, 4> realPoints; ///< machine coordinates, millimetres
    QPoint testPoint;                  ///< image pixels
    double xOffset = 0.0;              ///< millimetres, added after the map
    double yOffset = 0.0;
    AffineMap map{};

    /// Its keys, see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        visitor.field(CalibrationKeys::mapSwapXY, swapXY, false);
        for (int i = 0; i < 4; ++i) {
            visitor.field({"pixpoint#_x", i + 1}, pixelPoints[i].rx(), 0);
            visitor.field({"pixpoint#_y", i + 1}, pixelPoints[i].ry(), 0);
        }
        for (int i = 0; i < 4; ++i) {
            visitor.field({"Realpoint#_x", i + 1}, realPoints[i].rx(), 0.0);
            visitor.field({"Realpoint#_y", i + 1}, realPoints[i].ry(), 0.0);
        }
        visitor.field("testPoint_x", testPoint.rx(), 0);
        visitor.field("testPoint_y", testPoint.ry(), 0);
        visitor.field(CalibrationKeys::mapXOffset, xOffset, 0.0);
        visitor.field(CalibrationKeys::mapYOffset, yOffset, 0.0);
        for (const int i : {0, 3, 1, 4, 2, 5}) // the file's order
            visitor.field(CalibrationKeys::map[i], map[i], 0.0);
    }
};

/// What one station of the cell uses, and how it turns pixels into machine coordinates.
struct StationConfig
{
    QString camKey;      ///< camera key, as the core control delivers it with an image
    QString solution;    ///< engine solution; names the station
    QString runModel;    ///< engine model that runs now
    bool swapXY = false; ///< two-point calibration: swap X and Y
    TwoPointCalibration twoPoint;
    FourPointCalibration fourPoint;

    /// What the file holds in the place of values that answers rest on, by key; null for a key that is missing. Written
    /// back as it stands until the station is calibrated anew, and until then no place is answered.
    QJsonObject spoiledTwoPoint;
    QJsonObject spoiledFourPoint;

    /// As stored; with nothing stored, the two-point calibration is a scale of 1 and the other one a map to 0.
    Calibration twoPointCalibration() const
    {
        return Calibration::twoPoint(twoPoint.scale, {twoPoint.xOffset, twoPoint.yOffset}, swapXY)
            .spoiledBy(spoiledTwoPoint);
    }
    Calibration fourPointCalibration() const
    {
        return Calibration::fourPoint(fourPoint.map, {fourPoint.xOffset, fourPoint.yOffset}, fourPoint.swapXY)
            .spoiledBy(spoiledFourPoint);
    }
};
