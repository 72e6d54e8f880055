#include "graphics/ViewScale.h"

#include <QApplication>
#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionGraphicsItem>

namespace graphics {

namespace {

const QColor edge(0, 0, 0, 150);

QFont labelFont()
{
    QFont font = QApplication::font();
    font.setBold(true);
    return font;
}

} // namespace

double pixelLength(const QGraphicsItem& item)
{
    if (!item.scene() || item.scene()->views().isEmpty())
        return 1.0;
    const QTransform toView = item.deviceTransform(item.scene()->views().constFirst()->viewportTransform());
    const double scale = QStyleOptionGraphicsItem::levelOfDetailFromTransform(toView);
    return scale > 0 ? 1.0 / scale : 1.0;
}

QPen cosmeticPen(const QColor& color, double widthPx, Qt::PenStyle style)
{
    QPen pen(color, widthPx, style, Qt::RoundCap, Qt::RoundJoin);
    pen.setCosmetic(true);
    return pen;
}

QPen forScreen(QPen pen, const QPainter& painter)
{
    pen.setWidthF(pen.widthF() * painter.device()->devicePixelRatioF());
    return pen;
}

void strokeOutlined(QPainter* painter, const QPainterPath& path, const QPen& pen)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(forScreen(cosmeticPen(edge, pen.widthF() + 2.0), *painter));
    painter->drawPath(path);
    painter->setPen(forScreen(pen, *painter));
    painter->drawPath(path);
    painter->restore();
}

void drawLabel(QPainter* painter, const QPointF& at, const QPointF& offsetPx, const QString& text, const QColor& color)
{
    painter->save();
    const QPointF origin = painter->worldTransform().map(at) + offsetPx;
    painter->resetTransform();
    painter->setRenderHint(QPainter::Antialiasing);
    QPainterPath letters;
    letters.addText(origin, labelFont(), text);
    painter->strokePath(letters, QPen(edge, 3.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->fillPath(letters, color);
    painter->restore();
}

QRectF labelRectPx(const QPointF& offsetPx, const QString& text)
{
    const QFontMetricsF metrics(labelFont());
    return metrics.boundingRect(text).translated(offsetPx).adjusted(-3, -3, 3, 3);
}

} // namespace graphics
