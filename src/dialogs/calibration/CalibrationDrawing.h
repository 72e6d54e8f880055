#pragma once

#include "graphics/ViewOverlay.h"

#include <QPolygonF>

#include <memory>
#include <vector>

class Calibration;
class PointsItem;
class PolygonItem;
class QGraphicsItem;
class TextItem;

/// The thin lines between the markers of a calibration. Positions are relative to the image's centre, as the markers'
/// are. Its items are children of the image item. GUI thread.
class PointDrawing
{
public:
    explicit PointDrawing(QGraphicsItem* image);

    /// Lines from marker to marker, with a text at the middle of the first one.
    void setLines(const QPolygonF& markers, bool closed, const QString& text = {});

    /// Where the calibration sees a point whose marker lies elsewhere, with a line between the two.
    void setExpected(const QPointF& expected, const QPointF& marker);
    void hideExpected();

private:
    PolygonItem* m_lines;
    TextItem* m_text;
    PointsItem* m_expected;
    PolygonItem* m_miss;
};

/// What a calibrated picture says of the machine: its axes, and a scale bar in millimetres. Nothing for a calibration
/// that has no way back to the picture.
std::vector<std::unique_ptr<ViewOverlay>> machineOverlays(const Calibration& calibration);
