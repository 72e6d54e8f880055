#include "graphics/OverlayItem.h"

#include "graphics/ViewScale.h"

#include <QPainterPath>

namespace {
constexpr double crossArmPx = 9.0;
const QPointF textOffsetPx(10, -10);
} // namespace

OverlayItem::OverlayItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
    , m_pen(graphics::cosmeticPen(Qt::green))
{
    setAcceptedMouseButtons(Qt::NoButton);
}

void OverlayItem::setPen(const QPen& pen)
{
    m_pen = pen;
    update();
}

QRectF OverlayItem::boundingRect() const
{
    const double pixel = graphics::pixelLength(*this);
    const double margin = (m_pen.widthF() + 2.0) * pixel;
    return outline(pixel).controlPointRect().adjusted(-margin, -margin, margin, margin);
}

QPainterPath OverlayItem::shape() const
{
    return {};
}

void OverlayItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    graphics::strokeOutlined(painter, outline(graphics::pixelLength(*this)), m_pen);
}

void PointsItem::setPoints(const QVector<QPointF>& points)
{
    prepareGeometryChange();
    m_points = points;
}

QPainterPath PointsItem::outline(double pixel) const
{
    const double arm = crossArmPx * pixel;
    QPainterPath path;
    for (const QPointF& point : m_points) {
        path.moveTo(point - QPointF(arm, 0));
        path.lineTo(point + QPointF(arm, 0));
        path.moveTo(point - QPointF(0, arm));
        path.lineTo(point + QPointF(0, arm));
    }
    return path;
}

void PolygonItem::setPolygon(const QPolygonF& polygon, bool closed)
{
    prepareGeometryChange();
    m_polygon = polygon;
    m_closed = closed;
}

QPainterPath PolygonItem::outline(double) const
{
    QPainterPath path;
    path.addPolygon(m_polygon);
    if (m_closed)
        path.closeSubpath();
    return path;
}

void ArcItem::setArc(const QPointF& center, double radius, double startAngle, double spanAngle)
{
    prepareGeometryChange();
    m_center = center;
    m_radius = radius;
    m_startAngle = startAngle;
    m_spanAngle = spanAngle;
}

QPainterPath ArcItem::outline(double) const
{
    const QRectF circle(m_center.x() - m_radius, m_center.y() - m_radius, 2 * m_radius, 2 * m_radius);
    QPainterPath path;
    path.arcMoveTo(circle, m_startAngle);
    path.arcTo(circle, m_startAngle, m_spanAngle);
    return path;
}

void TextItem::setText(const QPointF& at, const QString& text)
{
    prepareGeometryChange();
    m_at = at;
    m_text = text;
}

QRectF TextItem::boundingRect() const
{
    const double pixel = graphics::pixelLength(*this);
    const QRectF label = graphics::labelRectPx(textOffsetPx, m_text);
    return {m_at + label.topLeft() * pixel, label.size() * pixel};
}

void TextItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    graphics::drawLabel(painter, m_at, textOffsetPx, m_text, pen().color());
}

QPainterPath TextItem::outline(double) const
{
    return {};
}
