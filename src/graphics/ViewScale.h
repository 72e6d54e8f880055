#pragma once

#include <QPen>

class QGraphicsItem;
class QPainter;
class QPainterPath;

/// What overlay items need to keep their screen size at any zoom. Lengths named "px" are pixels of the screen.
namespace graphics {

/// Half the side of the square around a handle or point that still meets it: wide enough for a finger.
constexpr double hitRadiusPx = 16.0;

/// The length of one screen pixel in the item's own coordinates, by the first view of its scene; 1 without a view.
double pixelLength(const QGraphicsItem& item);

/// A pen whose width does not follow the zoom.
QPen cosmeticPen(const QColor& color, double widthPx = 1.5, Qt::PenStyle style = Qt::SolidLine);

/// A cosmetic pen for drawing with `painter`: as wide on a screen of high density as on any other.
QPen forScreen(QPen pen, const QPainter& painter);

/// Strokes in item coordinates, with a dark edge below that keeps the line readable on any picture.
void strokeOutlined(QPainter* painter, const QPainterPath& path, const QPen& pen);

/// Writes upright text of screen size, its lower left corner `offsetPx` away from an item point, with a dark edge.
void drawLabel(QPainter* painter, const QPointF& at, const QPointF& offsetPx, const QString& text, const QColor& color);

/// What drawLabel() covers around the item point, in screen pixels.
QRectF labelRectPx(const QPointF& offsetPx, const QString& text);

} // namespace graphics
