#include "graphics/ZoomView.h"

#include "graphics/ViewOverlay.h"

#include <QApplication>
#include <QGestureEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

ZoomView::ZoomView(QWidget* parent)
    : QGraphicsView(parent)
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
    viewport()->grabGesture(Qt::PinchGesture);
}

ZoomView::~ZoomView() = default;

void ZoomView::setOverlays(std::vector<std::unique_ptr<ViewOverlay>> overlays)
{
    m_overlays = std::move(overlays);
    viewport()->update();
}

/// The condition is put so that it holds for no NaN.
bool ZoomView::applyScale(double scale)
{
    if (!(scale >= minScale && scale <= maxScale))
        return false;
    const QPointF center = mapToScene(rect().center());
    setTransform(QTransform::fromScale(scale, scale));
    centerOn(center);
    return true;
}

void ZoomView::restoreView(const QTransform& transform, const QPointF& center)
{
    resetTransform();
    setTransform(transform);
    centerOn(center);
}

bool ZoomView::fitContent()
{
    const QRectF content = contentRect();
    if (content.isEmpty() || viewport()->size().isEmpty())
        return false;
    const double scale = std::min(viewport()->width() / content.width(), viewport()->height() / content.height());
    if (!applyScale(qBound(minScale, scale, maxScale)))
        return false;
    centerOn(content.center());
    return true;
}

void ZoomView::fitByOperator()
{
    if (fitContent())
        scaledByOperator();
}

void ZoomView::scaleByOperator(double scale)
{
    if (applyScale(scale))
        scaledByOperator();
}

/// Whole notches only; what a touch pad sends in between does nothing.
void ZoomView::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps != 0)
        zoomSteps(steps);
    event->accept();
}

void ZoomView::keyPressEvent(QKeyEvent* event)
{
    QGraphicsView::keyPressEvent(event); // an item with the focus comes first
    if (event->isAccepted() && scene() && scene()->focusItem())
        return;
    event->accept();
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoomSteps(1);
    case Qt::Key_Minus:
        return zoomSteps(-1);
    case Qt::Key_0:
        return scaleByOperator(1.0);
    case Qt::Key_F:
        return fitByOperator();
    default:
        event->ignore();
    }
}

/// The middle button pans over items, too.
void ZoomView::mousePressEvent(QMouseEvent* event)
{
    QGraphicsView::mousePressEvent(event);
    const bool takenByItem = event->button() == Qt::LeftButton && scene() && scene()->mouseGrabberItem();
    if (takenByItem || (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton))
        return;
    m_drag = Drag::Pressed;
    m_pressedAt = m_panAt = event->pos();
    event->accept();
}

void ZoomView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_drag == Drag::Pressed && panAllowed() &&
        (event->pos() - m_pressedAt).manhattanLength() >= QApplication::startDragDistance()) {
        m_drag = Drag::Panning;
        viewport()->setCursor(Qt::ClosedHandCursor);
    }
    if (m_drag == Drag::Panning)
        pan(event->pos() - m_panAt);
    else
        QGraphicsView::mouseMoveEvent(event);
    m_panAt = event->pos();
}

void ZoomView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    const Drag ended = std::exchange(m_drag, Drag::None);
    if (ended == Drag::Panning)
        viewport()->unsetCursor();
    else if (ended == Drag::Pressed && event->button() == Qt::LeftButton)
        emit clicked(event->pos());
}

void ZoomView::mouseDoubleClickEvent(QMouseEvent* event)
{
    QGraphicsView::mouseDoubleClickEvent(event);
    const bool takenByItem = scene() && scene()->mouseGrabberItem();
    if (event->button() == Qt::LeftButton && !takenByItem && panAllowed())
        fitByOperator();
}

bool ZoomView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Gesture && pinch(*static_cast<QGestureEvent*>(event)))
        return true;
    return QGraphicsView::viewportEvent(event);
}

void ZoomView::drawForeground(QPainter* painter, const QRectF&)
{
    painter->save();
    painter->resetTransform();
    for (const auto& overlay : m_overlays)
        overlay->draw(painter, viewport()->rect(), viewScale());
    painter->restore();
}

void ZoomView::scrollContentsBy(int dx, int dy)
{
    // Scrolled pixels would take the overlays along.
    setViewportUpdateMode(m_overlays.empty() ? MinimalViewportUpdate : FullViewportUpdate);
    QGraphicsView::scrollContentsBy(dx, dy);
    setViewportUpdateMode(MinimalViewportUpdate);
}

void ZoomView::pan(const QPoint& by)
{
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - by.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - by.y());
}

bool ZoomView::pinch(const QGestureEvent& event)
{
    const auto* gesture = static_cast<QPinchGesture*>(event.gesture(Qt::PinchGesture));
    if (!gesture)
        return false;
    m_drag = Drag::None; // the first finger had begun to pan
    const QPoint center = viewport()->mapFromGlobal(gesture->centerPoint().toPoint());
    const QPointF anchor = mapToScene(center);
    scaleByOperator(viewScale() * gesture->scaleFactor());
    pan((gesture->centerPoint() - gesture->lastCenterPoint()).toPoint() + center - mapFromScene(anchor));
    return true;
}
