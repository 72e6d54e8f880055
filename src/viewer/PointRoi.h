#pragma once

#include "viewer/RoiItem.h"

/// A point, shown as a cross in a circle. The circle's diameter is in image pixels, but never smaller than a few
/// pixels of the screen.
class PointRoi : public RoiItem
{
    Q_OBJECT

public:
    PointRoi(const QString& name, const QColor& color, const QColor& selectedColor, double diameter);

    RoiShape roiShape() const override { return RoiShape::Point; }
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    bool beginDrag(const QPointF& at) override;
    void dragTo(const QPointF& at) override;
    QCursor cursorAt(const QPointF&) const override { return Qt::SizeAllCursor; }
    QRectF bodyRect() const override;
    QPointF labelAnchor() const override;

private:
    double radius() const; ///< as shown, image pixels

    QPointF m_grabbedAt;
};
