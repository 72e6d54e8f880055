#include "graphics/ViewOverlay.h"

#include "graphics/ViewScale.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

/// Lengths on the screen, whatever the zoom.
constexpr double marginPx = 16.0;
constexpr double axisPx = 44.0;
constexpr double arrowPx = 7.0;
constexpr double barPx = 160.0; ///< at most
const QColor ink(255, 255, 255);

QPointF unit(const QPointF& vector)
{
    const double length = std::hypot(vector.x(), vector.y());
    return length > 0 ? vector / length : QPointF();
}

void drawArrow(QPainter* painter, const QPointF& from, const QPointF& direction, const QString& name)
{
    const QPointF tip = from + direction * axisPx;
    const QPointF across(-direction.y(), direction.x());
    const QPointF barbs = tip - direction * arrowPx;
    QPainterPath path(from);
    path.lineTo(tip);
    path.moveTo(barbs + across * arrowPx / 2);
    path.lineTo(tip);
    path.lineTo(barbs - across * arrowPx / 2);
    graphics::strokeOutlined(painter, path, graphics::cosmeticPen(ink, 2.0));
    const QRectF label = graphics::labelRectPx({}, name);
    graphics::drawLabel(painter, tip + direction * 12.0, -label.center(), name, ink);
}

} // namespace

AxesOverlay::AxesOverlay(const QPointF& xDirection, const QPointF& yDirection)
    : m_x(unit(xDirection))
    , m_y(unit(yDirection))
{
}

void AxesOverlay::draw(QPainter* painter, const QRectF& viewport, double)
{
    const double reach = marginPx + axisPx + 20.0; // the arrows may point any way
    const QPointF origin = viewport.bottomLeft() + QPointF(reach, -reach);
    drawArrow(painter, origin, m_x, QStringLiteral("X"));
    drawArrow(painter, origin, m_y, QStringLiteral("Y"));
}

ScaleBarOverlay::ScaleBarOverlay(double millimetresPerPixel)
    : m_millimetresPerPixel(millimetresPerPixel)
{
}

double ScaleBarOverlay::roundLength(double length)
{
    const double power = std::pow(10.0, std::floor(std::log10(length)));
    const double digits = length / power * (1.0 + 1e-12);
    return power * (digits >= 5.0 ? 5.0 : digits >= 2.0 ? 2.0 : 1.0);
}

void ScaleBarOverlay::draw(QPainter* painter, const QRectF& viewport, double viewScale)
{
    const double millimetresPerScreenPixel = m_millimetresPerPixel / viewScale;
    const double millimetres = roundLength(barPx * millimetresPerScreenPixel);
    const QPointF right = viewport.bottomRight() - QPointF(marginPx, marginPx);
    const QPointF left = right - QPointF(millimetres / millimetresPerScreenPixel, 0);
    const QPointF tick(0, 6);
    QPainterPath path(left - tick);
    path.lineTo(left);
    path.lineTo(right);
    path.lineTo(right - tick);
    graphics::strokeOutlined(painter, path, graphics::cosmeticPen(ink, 2.0));
    const QString text = QStringLiteral("%1 mm").arg(millimetres);
    const QPointF middle = (left + right) / 2;
    graphics::drawLabel(painter, middle, {-graphics::labelRectPx({}, text).center().x(), -8}, text, ink);
}
