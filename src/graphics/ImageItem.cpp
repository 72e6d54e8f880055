#include "graphics/ImageItem.h"

#include "graphics/SmoothScaler.h"
#include "graphics/ViewScale.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QtMath>

namespace {

/// So many rows are scaled and drawn at a time that they stay in the processor's cache between.
constexpr int bandRows = 32;

/// In a format that can be drawn fast; the usual ones as they are.
QImage drawable(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Grayscale8:
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return image;
    case QImage::Format_Grayscale16:
        return image.convertToFormat(QImage::Format_Grayscale8);
    default:
        return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                             : QImage::Format_RGB32);
    }
}

/// The general painter enlarges colour images several times faster than gray ones; and of an enlarged image little is
/// seen, so that it costs little to convert that.
void drawPart(QPainter* painter, const QImage& image, const QRectF& exposed)
{
    const QRect seen = exposed.toAlignedRect().adjusted(-1, -1, 1, 1) & image.rect();
    if (image.format() == QImage::Format_Grayscale8)
        painter->drawImage(seen.topLeft(), image.copy(seen).convertToFormat(QImage::Format_RGB32));
    else
        painter->drawImage(0, 0, image);
}

/// The pixels whose middle lies in a rectangle, but at least one row and column.
QRect pixelsOf(const QRectF& rect)
{
    const QPoint from(qRound(rect.left()), qRound(rect.top()));
    return {from, QSize(qMax(1, qRound(rect.right()) - from.x()), qMax(1, qRound(rect.bottom()) - from.y()))};
}

} // namespace

ImageItem::ImageItem()
{
    setShapeMode(BoundingRectShape);
    setTransformationMode(Qt::SmoothTransformation);
    setFlag(ItemUsesExtendedStyleOption); // says what is exposed
    QObject::connect(&m_pyramid, &ImagePyramid::refined, &m_pyramid, [this] { update(); });
}

void ImageItem::setImage(const QImage& image)
{
    m_image = image;
    m_image.setDevicePixelRatio(1.0); // a pixel is a pixel, also of a picture of a fine screen
    m_prepared = false;
    setPixmap(QPixmap::fromImage(m_image, Qt::NoFormatConversion));
    setOffset(-image.width() / 2.0, -image.height() / 2.0);
}

void ImageItem::prepare()
{
    if (!m_prepared)
        m_pyramid.setImage(drawable(m_image));
    m_prepared = true;
}

void ImageItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    if (m_image.isNull())
        return;
    prepare();
    const double ratio = painter->device()->devicePixelRatioF();
    const double scale = ratio * option->levelOfDetailFromTransform(painter->worldTransform());
    const int level = m_pyramid.levelFor(scale);
    const QImage& image = m_pyramid.level(level);
    const double pixel = 1 << level; // of the level, in image pixels
    const QTransform toView = QTransform(pixel, 0, 0, pixel, offset().x(), offset().y()) * painter->worldTransform();
    const QRectF exposed = painter->worldTransform().mapRect(option->exposedRect); // view
    painter->save();
    if (scale < 1.0 && !image.hasAlphaChannel() && toView.type() <= QTransform::TxScale) {
        drawSmaller(painter, image, toView, exposed);
    } else {
        painter->setRenderHint(QPainter::SmoothPixmapTransform, scale < 1.0);
        painter->setWorldTransform(toView);
        drawPart(painter, image, toView.inverted().mapRect(exposed));
    }
    painter->restore();
    if (scale > gridScale * ratio)
        drawGrid(painter, option->exposedRect & boundingRect());
}

void ImageItem::drawSmaller(QPainter* painter, const QImage& image, const QTransform& toView, const QRectF& exposed)
{
    const double ratio = painter->device()->devicePixelRatioF();
    const QTransform toDevice = toView * QTransform::fromScale(ratio, ratio);
    const QRectF visible =
        QRectF(exposed.topLeft() * ratio, exposed.size() * ratio) & toDevice.mapRect(QRectF(QPointF(), image.size()));
    const QRect target = pixelsOf(visible);
    if (visible.isEmpty())
        return;
    painter->resetTransform();
    const SmoothScaler scaler(image, toDevice, target);
    QImage band(target.width(), bandRows, QImage::Format_RGB32);
    for (int top = 0; top < target.height(); top += bandRows) {
        scaler.render(band, top);
        const QRectF part(0, 0, band.width(), qMin(bandRows, target.height() - top));
        const QRectF place(target.left(), target.top() + top, part.width(), part.height());
        painter->drawImage(QRectF(place.topLeft() / ratio, place.size() / ratio), band, part);
    }
}

void ImageItem::drawGrid(QPainter* painter, const QRectF& exposed) const
{
    const QRectF pixels(toImage(exposed.topLeft()), exposed.size());
    QVector<QLineF> lines;
    for (int x = qCeil(pixels.left()); x <= qFloor(pixels.right()); ++x)
        lines.append({fromImage({double(x), pixels.top()}), fromImage({double(x), pixels.bottom()})});
    for (int y = qCeil(pixels.top()); y <= qFloor(pixels.bottom()); ++y)
        lines.append({fromImage({pixels.left(), double(y)}), fromImage({pixels.right(), double(y)})});
    painter->setPen(graphics::cosmeticPen(QColor(128, 128, 128, 110), 1.0));
    painter->drawLines(lines);
}
