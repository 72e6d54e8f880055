#pragma once

#include "OverlayItem.h"

#include <QGraphicsView>
#include <QImage>

class QGraphicsPixmapItem;

/// Shows an image scaled to fit; the wheel zooms around the pointer, dragging moves, a double click fits again. Points
/// are in image pixels, the middle of the top-left pixel being (0, 0).
class ImageView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit ImageView(QWidget* parent = nullptr);

    /// Replaces the image. The zoom stays while the image size stays. A null image clears the view.
    void setImage(const QImage& image);
    bool hasImage() const;

    /// A text in the middle while there is no image.
    void setHint(const QString& hint);

    /// What is drawn over the image, in its pixels.
    OverlayItem* overlay() const { return m_overlay; }
    /// Whether the next click means a point: the pointer is then a cross.
    void setPicking(bool picking);

    /// With parts of a pixel, so that a click on a zoomed image is as exact as the zoom.
    QPointF imagePointAt(const QPoint& viewPoint) const;
    QPoint viewPointOf(const QPointF& imagePoint) const;

public slots:
    /// Shows the whole image and keeps it whole when the view is resized.
    void fit();

signals:
    /// The left button was pressed and released on the image without dragging.
    void clicked(const QPointF& imagePoint);
    /// A context menu was asked for on the image.
    void menuWanted(const QPointF& imagePoint, const QPoint& globalPosition);

protected:
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void drawForeground(QPainter* painter, const QRectF& rect) override;

private:
    QGraphicsScene m_scene;
    QGraphicsPixmapItem* m_item;
    OverlayItem* m_overlay;
    QString m_hint;
    QPoint m_pressed;
    bool m_fitted = true;
    bool m_picking = false;
};
