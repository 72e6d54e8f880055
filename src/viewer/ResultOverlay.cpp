#include "viewer/ResultOverlay.h"

#include "graphics/ViewScale.h"

namespace {

const QColor foundColor(64, 224, 96);
const QColor referenceColor(80, 180, 255);
constexpr double turnRadius = 0.25; ///< of the arc that shows the angle, as a part of the rim's

} // namespace

ResultOverlay::ResultOverlay(QGraphicsItem* image)
    : m_rim(new ArcItem(image))
    , m_hole(new ArcItem(image))
    , m_turn(new ArcItem(image))
    , m_way(new PolygonItem(image))
    , m_centers(new PointsItem(image))
    , m_angle(new TextItem(image))
{
    const QVector<OverlayItem*> reference{m_rim, m_turn, m_way};
    const QVector<OverlayItem*> found{m_hole, m_centers, m_angle};
    for (OverlayItem* item : reference)
        item->setPen(graphics::cosmeticPen(referenceColor));
    for (OverlayItem* item : found)
        item->setPen(graphics::cosmeticPen(foundColor, 2.0));
    m_items = reference + found;
    hide();
}

/// Without a hub only the hole is drawn: rim, way and angle would begin nowhere.
void ResultOverlay::show(const ResultDrawing& drawing, const QPointF& origin)
{
    const QPointF hole = origin + drawing.hole;
    const QPointF hub = origin + drawing.hub;
    const bool hubKnown = drawing.hubRadius > 0;
    m_rim->setArc(hub, drawing.hubRadius);
    m_turn->setArc(hub, turnRadius * drawing.hubRadius, 0, drawing.angle);
    m_hole->setArc(hole, drawing.holeRadius);
    m_way->setPolygon(QVector<QPointF>{hub + QPointF(turnRadius * drawing.hubRadius, 0), hub, hole}, false);
    m_centers->setPoints(hubKnown ? QVector<QPointF>{hub, hole} : QVector<QPointF>{hole});
    m_angle->setText(hole, QStringLiteral("%1°").arg(drawing.angle, 0, 'f', 3));
    m_rim->setVisible(hubKnown);
    m_turn->setVisible(hubKnown);
    m_way->setVisible(hubKnown);
    m_hole->setVisible(drawing.holeRadius > 0);
    m_centers->show();
    m_angle->show();
}

void ResultOverlay::hide()
{
    for (OverlayItem* item : qAsConst(m_items))
        item->hide();
}
