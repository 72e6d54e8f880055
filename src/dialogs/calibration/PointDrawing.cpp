#include "dialogs/calibration/PointDrawing.h"

#include "graphics/OverlayItem.h"
#include "graphics/ViewScale.h"

namespace {
const QColor kLine(255, 0, 255);
const QColor kExpected(255, 168, 55);
} // namespace

PointDrawing::PointDrawing(QGraphicsItem* image)
    : m_lines(new PolygonItem(image))
    , m_text(new TextItem(image))
    , m_expected(new PointsItem(image))
    , m_miss(new PolygonItem(image))
{
    m_lines->setPen(graphics::cosmeticPen(kLine, 1.0));
    m_text->setPen(graphics::cosmeticPen(kLine));
    m_expected->setPen(graphics::cosmeticPen(kExpected));
    m_miss->setPen(graphics::cosmeticPen(kExpected));
    hideExpected();
}

void PointDrawing::setLines(const QPolygonF& markers, bool closed, const QString& text)
{
    m_lines->setPolygon(markers, closed);
    if (markers.size() > 1)
        m_text->setText((markers.at(0) + markers.at(1)) / 2, text);
}

void PointDrawing::setExpected(const QPointF& expected, const QPointF& marker)
{
    m_expected->setPoints({expected});
    m_miss->setPolygon(QVector<QPointF>{expected, marker}, false);
    m_expected->show();
    m_miss->show();
}

void PointDrawing::hideExpected()
{
    m_expected->hide();
    m_miss->hide();
}
