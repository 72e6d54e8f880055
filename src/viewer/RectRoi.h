#pragma once

#include "viewer/RoiItem.h"

/// The cursors of regions of interest. GUI thread.
namespace RoiCursors {

/// How many eighths of a turn a region's rotation (degrees) is away from upright, rounded as the cursors need it: 0
/// to 7.
int rotationOffset(double rotation);

/// One of the eight rotation cursors; entry `index` mod 8 shows 45 * index degrees.
QCursor rotation(int index);

/// The resize cursor of a handle that lies `direction` eighths of a turn from +x, clockwise, on a region that is turned
/// by `offset` eighths.
Qt::CursorShape resize(int direction, int offset);

} // namespace RoiCursors

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
    /// The handle's place, by its direction as handleAt() returns it.
    QPointF handlePoint(int direction) const;
    /// Moves the grabbed handle there; the opposite side or corner stays.
    void resizeTo(const QPointF& at);

    int m_handle = noHandle;
    QPointF m_grabbedAt; ///< of a handle: its distance from the mouse
};

/// A rectangle that can also be turned, by dragging around it.
class RotatedRectRoi : public RectRoi
{
    Q_OBJECT

public:
    using RectRoi::RectRoi;

    RoiShape roiShape() const override { return RoiShape::RotatedRect; }

    /// The cursor over a point of the item: over a handle its resize cursor, inside the body the four-way move cursor,
    /// anywhere else, and while it is being turned, the rotation cursor of the point's sector.
    QCursor cursorAt(const QPointF& at) const override;

    /// In which eighth of the surroundings a point of the item lies: 0 around +x, then clockwise.
    static int sectorOf(const QPointF& at);

protected:
    double reachPx() const override;
    bool beginDrag(const QPointF& at) override;
    void dragTo(const QPointF& at) override;
    void endDrag() override { m_turning = false; }

private:
    bool m_turning = false; ///< rotation mode: from pressing beside the body until the release
    double m_turnStart = 0; ///< rotation minus the mouse's direction, degrees
};
