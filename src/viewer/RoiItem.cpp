#include "viewer/RoiItem.h"

#include "graphics/ImageItem.h"
#include "graphics/ViewScale.h"

#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QKeyEvent>
#include <QPainter>

#include <cmath>

namespace {

const QPointF labelOffsetPx(10, -10);

QPointF arrowStep(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

double stepLength(Qt::KeyboardModifiers modifiers)
{
    return modifiers & Qt::ShiftModifier ? 10.0 : modifiers & Qt::ControlModifier ? 0.1 : 1.0;
}

} // namespace

RoiItem::RoiItem(const QString& name, const QColor& color, const QColor& selectedColor)
    : m_name(name)
    , m_color(color)
    , m_selectedColor(selectedColor)
{
    setFlags(ItemIsSelectable | ItemIsFocusable);
    setAcceptHoverEvents(true);
}

void RoiItem::setPlace(const RoiPlace& place)
{
    prepareGeometryChange();
    m_size = place.size;
    setPos(place.pos);
    setRotation(place.rotation);
    emit placeChanged();
}

void RoiItem::setLocked(bool locked)
{
    m_locked = locked;
    update();
}

void RoiItem::setHandlesShown(bool shown)
{
    m_handlesShown = shown;
    update();
}

QRectF RoiItem::boundingRect() const
{
    // The label stays upright while the item turns, so its reach counts in every direction.
    const QRectF label = graphics::labelRectPx(labelOffsetPx, m_name);
    const double reachPx = std::max(2.5 * graphics::hitRadiusPx, std::hypot(label.right(), label.top()));
    const double reach = reachPx * graphics::pixelLength(*this);
    return bodyRect().adjusted(-reach, -reach, reach, reach);
}

QPointF RoiItem::imagePoint() const
{
    const auto* image = dynamic_cast<const ImageItem*>(parentItem());
    return image ? image->toImage(pos()) : pos();
}

void RoiItem::setSize(const QSizeF& size)
{
    prepareGeometryChange();
    m_size = size;
}

QPen RoiItem::outlinePen() const
{
    const QColor color = isSelected() && !m_locked ? m_selectedColor : m_color;
    return graphics::cosmeticPen(color, m_locked ? 1.0 : 2.0);
}

void RoiItem::drawName(QPainter* painter) const
{
    graphics::drawLabel(painter, labelAnchor(), labelOffsetPx, m_name, outlinePen().color());
}

void RoiItem::moveBy(const QPointF& by)
{
    setPos(pos() + by);
    emit placeChanged();
}

/// A locked region takes the press and says so: passed on, it would pan the picture.
void RoiItem::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    event->accept();
    if (m_locked) {
        emit lockedTouched();
        return;
    }
    if (event->button() != Qt::LeftButton || !beginDrag(mapFromScene(event->scenePos())))
        return event->ignore();
    scene()->clearSelection();
    setSelected(true);
    setFocus(Qt::MouseFocusReason);
    m_dragging = true;
    m_dragMoved = false;
}

void RoiItem::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    if (!m_dragging)
        return;
    if (!m_dragMoved)
        emit moveBegins(place());
    m_dragMoved = true;
    dragTo(mapFromScene(event->scenePos())); // pos() is off when the item has moved since it was painted
    setCursor(cursorAt(mapFromScene(event->scenePos())));
    emit placeChanged();
}

void RoiItem::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    if (m_dragging && event->button() == Qt::LeftButton) {
        m_dragging = false;
        endDrag();
    }
}

// A quick second press is as good as any other.
void RoiItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event)
{
    mousePressEvent(event);
}

void RoiItem::hoverMoveEvent(QGraphicsSceneHoverEvent* event)
{
    setCursor(m_locked ? QCursor(Qt::ArrowCursor) : cursorAt(event->pos()));
}

/// A key held down is one move, for whoever takes it back.
void RoiItem::keyPressEvent(QKeyEvent* event)
{
    const QPointF step = arrowStep(event->key());
    if (step.isNull())
        return event->ignore();
    if (m_locked) {
        emit lockedTouched();
        return;
    }
    if (!event->isAutoRepeat())
        emit moveBegins(place());
    moveBy(step * stepLength(event->modifiers()));
}
