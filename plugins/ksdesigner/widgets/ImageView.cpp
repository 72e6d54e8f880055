#include "ImageView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QGraphicsPixmapItem>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace {

constexpr double zoomStep = 1.0015; // a wheel notch of 120 units zooms by 1.2
constexpr double largestZoom = 40;

} // namespace

ImageView::ImageView(QWidget* parent)
    : QGraphicsView(parent)
    , m_item(m_scene.addPixmap(QPixmap()))
    , m_overlay(new OverlayItem)
{
    setScene(&m_scene);
    m_scene.addItem(m_overlay);
    m_item->setTransformationMode(Qt::SmoothTransformation);
    // The middle of the top-left pixel is (0, 0).
    m_item->setOffset(-0.5, -0.5);
    setBackgroundBrush(QColor(0x2b, 0x2d, 0x30));
    setDragMode(QGraphicsView::ScrollHandDrag);
    setTransformationAnchor(QGraphicsView::AnchorUnderMouse);
    setFrameShape(QFrame::NoFrame);
    setPicking(false);
}

void ImageView::setPicking(bool picking)
{
    m_picking = picking;
    viewport()->setCursor(picking ? Qt::CrossCursor : Qt::ArrowCursor);
}

void ImageView::setImage(const QImage& image)
{
    const QSize before = m_item->pixmap().size();
    m_item->setPixmap(QPixmap::fromImage(image));
    m_scene.setSceneRect(m_item->boundingRect());
    m_overlay->setArea(m_item->boundingRect());
    if (m_fitted || image.size() != before)
        fit();
    viewport()->update();
}

bool ImageView::hasImage() const
{
    return !m_item->pixmap().isNull();
}

void ImageView::setHint(const QString& hint)
{
    m_hint = hint;
    viewport()->update();
}

QPointF ImageView::imagePointAt(const QPoint& viewPoint) const
{
    return viewportTransform().inverted().map(QPointF(viewPoint));
}

QPoint ImageView::viewPointOf(const QPointF& imagePoint) const
{
    return mapFromScene(imagePoint);
}

void ImageView::fit()
{
    m_fitted = true;
    if (hasImage())
        fitInView(m_item, Qt::KeepAspectRatio);
}

void ImageView::wheelEvent(QWheelEvent* event)
{
    const double factor = std::pow(zoomStep, event->angleDelta().y());
    const bool tooLarge = transform().m11() * factor > largestZoom;
    if (!hasImage() || tooLarge)
        return;
    m_fitted = false;
    scale(factor, factor);
    const QSizeF shown = transform().mapRect(sceneRect()).size();
    if (shown.width() < viewport()->width() && shown.height() < viewport()->height())
        fit();
}

void ImageView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (m_fitted)
        fit();
}

void ImageView::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->pos();
    QGraphicsView::mousePressEvent(event);
}

void ImageView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    setPicking(m_picking);
    const bool dragged = (event->pos() - m_pressed).manhattanLength() > QApplication::startDragDistance();
    const QPointF point = imagePointAt(event->pos());
    if (event->button() == Qt::LeftButton && !dragged && hasImage() && sceneRect().contains(point))
        emit clicked(point);
}

void ImageView::mouseDoubleClickEvent(QMouseEvent* event)
{
    Q_UNUSED(event)
    fit();
}

void ImageView::contextMenuEvent(QContextMenuEvent* event)
{
    const QPointF point = imagePointAt(event->pos());
    if (hasImage() && sceneRect().contains(point))
        emit menuWanted(point, event->globalPos());
}

void ImageView::drawForeground(QPainter* painter, const QRectF& rect)
{
    QGraphicsView::drawForeground(painter, rect);
    if (hasImage() || m_hint.isEmpty())
        return;
    painter->resetTransform();
    painter->setPen(QColor(0xbd, 0xc1, 0xc6));
    painter->drawText(viewport()->rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
}
