#pragma once

#include "graphics/ImagePyramid.h"

#include <QGraphicsPixmapItem>

/// The picture of a scene. Its origin is the picture's centre: the offset is (-width/2, -height/2). The pixmap shares
/// the image's data, nothing is converted or copied. Below 1:1 it is drawn smooth, from 1:1 on every pixel is sharp,
/// and past `gridScale` lines part the pixels.
class ImageItem : public QGraphicsPixmapItem
{
public:
    static constexpr double gridScale = 16.0;

    ImageItem();

    void setImage(const QImage& image);
    const QImage& image() const { return m_image; }
    QSize size() const { return m_image.size(); }

    /// Image pixels, (0, 0) the top-left corner of the picture, from item coordinates; and back.
    QPointF toImage(const QPointF& itemPoint) const { return itemPoint - offset(); }
    QPointF fromImage(const QPointF& imagePoint) const { return imagePoint + offset(); }

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void prepare();
    void drawSmaller(QPainter* painter, const QImage& image, const QTransform& toView, const QRectF& exposed);
    void drawGrid(QPainter* painter, const QRectF& exposed) const;

    QImage m_image;
    bool m_prepared = false; ///< the pyramid holds the image
    ImagePyramid m_pyramid;
};
