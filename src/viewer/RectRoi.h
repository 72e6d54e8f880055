#pragma once

#include "viewer/RoiItem.h"

/// A rectangle along the image's axes, with a handle at each corner and the middle of each side.
class RectRoi : public RoiItem
{
    Q_OBJECT

public:
    RectRoi(const QString& name, const QColor& color, const QColor& selectedColor, const QSizeF& size);

    RoiShape roiShape() const override { return RoiShape::Rect; }
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    static constexpr int noHandle = -1;

    /// The handle at a point, by its direction from the centre in eighths of a turn clockwise from +x, or `noHandle`.
    int handleAt(const QPointF& at) const;
    virtual double reachPx() const; ///< how far around the rectangle it is still met

    bool beginDrag(const QPointF& at) override;
    void dragTo(const QPointF& at) override;
    QCursor cursorAt(const QPointF& at) const override;
    QRectF bodyRect() const override;
    QPointF labelAnchor() const override { return bodyRect().topRight(); }

private:
    /// The handle's place, by its direction as handleAt() tells it.
    QPointF handlePoint(int direction) const;
    /// Moves the grabbed handle there; the opposite side or corner stays.
    void resizeTo(const QPointF& at);

    int m_handle = noHandle;
    QPointF m_grabbedAt; ///< of a handle: its distance from the mouse
};
