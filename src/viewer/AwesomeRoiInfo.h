#pragma once

#include <QMetaType>
#include <QPointF>
#include <QSizeF>

enum class RoiShape { Point, Rect, RotatedRect };

/// What a viewer reports of a region of interest. Image pixels; (0, 0) is the top-left corner of the picture, so a
/// coordinate cut to a whole number names the pixel.
struct AwesomeRoiInfo
{
    QPointF center;
    QSizeF size;         ///< of a point: its marker's diameter, both ways
    double rotation = 0; ///< degrees, clockwise as seen on the screen
    RoiShape shape = RoiShape::Point;
};

Q_DECLARE_METATYPE(AwesomeRoiInfo)
