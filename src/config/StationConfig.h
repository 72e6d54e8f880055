#pragma once

#include "common/Calibration.h"

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

    /// As stored; with nothing stored, the two-point calibration is a scale of 1 and the other one a map to 0.
    Calibration twoPointCalibration() const
    {
        return Calibration::twoPoint(twoPoint.scale, {twoPoint.xOffset, twoPoint.yOffset}, swapXY);
    }
    Calibration fourPointCalibration() const
    {
        return Calibration::fourPoint(fourPoint.map, {fourPoint.xOffset, fourPoint.yOffset}, fourPoint.swapXY);
    }
};
