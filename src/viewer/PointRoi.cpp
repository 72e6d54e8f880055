#include "viewer/PointRoi.h"

#include "graphics/ViewScale.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {
/// A marker far zoomed out can still be seen and met.
constexpr double smallestRadiusPx = 6.0;
constexpr double pixelSeenPx = 8.0; ///< from this size on the pixel that the point names is framed
} // namespace

PointRoi::PointRoi(const QString& name, const QColor& color, const QColor& selectedColor, double diameter)
    : RoiItem(name, color, selectedColor)
{
    setSize({diameter, diameter});
}

double PointRoi::radius() const
{
    return std::max(size().width() / 2.0, smallestRadiusPx * graphics::pixelLength(*this));
}

QRectF PointRoi::bodyRect() const
{
    const double r = radius();
    return {-r, -r, 2 * r, 2 * r};
}

QPointF PointRoi::labelAnchor() const
{
    return QPointF(radius(), -radius()) * 0.7071;
}

QPainterPath PointRoi::shape() const
{
    const double r = std::max(radius(), graphics::hitRadiusPx * graphics::pixelLength(*this));
    QPainterPath path;
    path.addEllipse(QPointF(), r, r);
    return path;
}

bool PointRoi::beginDrag(const QPointF& at)
{
    m_grabbedAt = at;
    return true;
}

void PointRoi::dragTo(const QPointF& at)
{
    setPos(pos() + at - m_grabbedAt);
}

void PointRoi::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const double r = radius();
    const double pixel = graphics::pixelLength(*this);
    QPainterPath marker;
    marker.addEllipse(QPointF(), r, r);
    for (const QPointF& arm : {QPointF(1, 0), QPointF(0, 1), QPointF(-1, 0), QPointF(0, -1)}) {
        marker.moveTo(arm * 2.0 * pixel); // the point itself stays free
        marker.lineTo(arm * (handlesShown() && !isLocked() ? r + 5.0 * pixel : r));
    }
    graphics::strokeOutlined(painter, marker, outlinePen());
    drawName(painter);
    if (pixel * pixelSeenPx > 1.0)
        return;
    const QPointF inImage = imagePoint();
    const QPointF corner(std::floor(inImage.x()), std::floor(inImage.y()));
    painter->setPen(graphics::forScreen(graphics::cosmeticPen(outlinePen().color(), 1.0, Qt::DotLine), *painter));
    painter->drawRect(QRectF(corner - inImage, QSizeF(1, 1)));
}
