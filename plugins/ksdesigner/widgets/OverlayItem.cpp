#include "OverlayItem.h"

#include <QPainter>

namespace {

const QColor accepted(0x00, 0xe6, 0x3c);
const QColor weighed(0xff, 0xb0, 0x20);
const QColor edge(0x00, 0xc8, 0xff);
const QColor markColour(0xff, 0x50, 0xc8);
constexpr int crossArm = 9; // pixels of the screen

/// Readable on any image: dark under light.
void paintText(QPainter* painter, const QPointF& at, const QString& text, const QColor& colour)
{
    painter->setPen(Qt::black);
    painter->drawText(at + QPointF(1, 1), text);
    painter->setPen(colour);
    painter->drawText(at, text);
}

} // namespace

void OverlayItem::setArea(const QRectF& area)
{
    prepareGeometryChange();
    m_area = area;
}

void OverlayItem::setShapes(const QVector<TrialCircle>& circles, const QVector<QPointF>& points)
{
    m_circles = circles;
    m_points = points;
    update();
}

void OverlayItem::setMarks(const QVector<Mark>& marks)
{
    m_marks = marks;
    update();
}

void OverlayItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget)
{
    Q_UNUSED(option)
    Q_UNUSED(widget)
    const QTransform toView = painter->worldTransform();
    painter->resetTransform();
    painter->setRenderHint(QPainter::Antialiasing);
    paintCircles(painter, toView);
    paintPoints(painter, toView);
    paintMarks(painter, toView);
    painter->setWorldTransform(toView);
}

void OverlayItem::paintCircles(QPainter* painter, const QTransform& toView) const
{
    painter->setBrush(Qt::NoBrush);
    for (const TrialCircle& circle : m_circles) {
        const QColor colour = circle.accepted ? accepted : weighed;
        const QPointF center = toView.map(circle.center);
        const double radius = circle.radius * toView.m11();
        painter->setPen(QPen(colour, circle.accepted ? 2 : 1.2));
        painter->drawEllipse(center, radius, radius);
        painter->drawLine(center - QPointF(4, 0), center + QPointF(4, 0));
        painter->drawLine(center - QPointF(0, 4), center + QPointF(0, 4));
        paintText(painter, center + QPointF(radius * 0.71 + 5, -radius * 0.71 - 3), circle.label, colour);
    }
}

void OverlayItem::paintPoints(QPainter* painter, const QTransform& toView) const
{
    painter->setPen(QPen(edge, 3, Qt::SolidLine, Qt::RoundCap));
    for (const QPointF& point : m_points)
        painter->drawPoint(toView.map(point));
}

void OverlayItem::paintMarks(QPainter* painter, const QTransform& toView) const
{
    for (const Mark& mark : m_marks) {
        const QPointF at = toView.map(mark.point);
        painter->setPen(QPen(markColour, 2));
        painter->drawLine(at - QPointF(crossArm, 0), at + QPointF(crossArm, 0));
        painter->drawLine(at - QPointF(0, crossArm), at + QPointF(0, crossArm));
        paintText(painter, at + QPointF(crossArm, -crossArm), mark.label, markColour);
    }
}
