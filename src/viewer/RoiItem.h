#pragma once

#include "viewer/AwesomeRoiInfo.h"

#include <QCursor>
#include <QGraphicsObject>
#include <QPen>

/// Where a region lies; what an undo brings back. `pos` is relative to the image's centre, in image pixels.
struct RoiPlace
{
    QPointF pos;
    QSizeF size;
    double rotation = 0; ///< degrees, clockwise as seen on the screen
};

/// A region of interest on an image: a child of the image item, so its position is relative to the image's centre.
/// Dragged with the mouse, moved with the arrow keys (1 pixel, Shift: 10, Ctrl: 0.1). GUI thread.
class RoiItem : public QGraphicsObject
{
    Q_OBJECT

public:
    RoiItem(const QString& name, const QColor& color, const QColor& selectedColor);

    const QString& name() const { return m_name; }
    virtual RoiShape roiShape() const = 0;

    /// The region in image pixels, as viewers report it.
    AwesomeRoiInfo info() const { return {imagePoint(), m_size, rotation(), roiShape()}; }
    RoiPlace place() const { return {pos(), m_size, rotation()}; }
    void setPlace(const RoiPlace& place);

    bool isLocked() const { return m_locked; }
    void setLocked(bool locked);
    bool handlesShown() const { return m_handlesShown; }
    void setHandlesShown(bool shown);

    QRectF boundingRect() const override;

signals:
    void moveBegins(const RoiPlace& from); ///< the operator begins to drag, or presses an arrow key
    void placeChanged();
    void lockedTouched(); ///< somebody tried to move it although it is locked

protected:
    /// Starts a drag at a point of the item; false when the point meets nothing to drag.
    virtual bool beginDrag(const QPointF& at) = 0;
    /// The mouse is at this point of the item, as it lies before it gives way.
    virtual void dragTo(const QPointF& at) = 0;
    /// The button was released.
    virtual void endDrag() {}
    virtual QCursor cursorAt(const QPointF& at) const = 0;
    /// The region without its screen-sized parts.
    virtual QRectF bodyRect() const = 0;
    /// Where the name begins.
    virtual QPointF labelAnchor() const = 0;

    QPointF imagePoint() const; ///< the centre, image pixels
    const QSizeF& size() const { return m_size; }
    void setSize(const QSizeF& size);
    QPen outlinePen() const;
    void drawName(QPainter* painter) const;
    void moveBy(const QPointF& by); ///< in the image's axes

    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString m_name;
    QColor m_color;
    QColor m_selectedColor;
    QSizeF m_size;
    bool m_locked = false;
    bool m_handlesShown = false;
    bool m_dragging = false;
    bool m_dragMoved = false;
};
