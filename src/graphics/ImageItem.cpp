#include "graphics/ImageItem.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

ImageItem::ImageItem()
{
    setShapeMode(BoundingRectShape);
    setTransformationMode(Qt::SmoothTransformation);
}

void ImageItem::setImage(const QImage& image)
{
    m_image = image;
    setPixmap(QPixmap::fromImage(image, Qt::NoFormatConversion));
    setOffset(-image.width() / 2.0, -image.height() / 2.0);
}

void ImageItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    const double scale = option->levelOfDetailFromTransform(painter->worldTransform());
    painter->setRenderHint(QPainter::SmoothPixmapTransform, scale < 1.0);
    painter->drawImage(offset(), m_image);
}
