#include "dialogs/calibration/CalibrationDrawing.h"

#include "common/Calibration.h"
#include "graphics/OverlayItem.h"
#include "graphics/ViewScale.h"

namespace {
const QColor lineColor(255, 0, 255);
const QColor expectedColor(255, 168, 55);
} // namespace

PointDrawing::PointDrawing(QGraphicsItem* image)
    : m_lines(new PolygonItem(image))
    , m_text(new TextItem(image))
    , m_expected(new PointsItem(image))
    , m_miss(new PolygonItem(image))
{
    m_lines->setPen(graphics::cosmeticPen(lineColor, 1.0));
    m_text->setPen(graphics::cosmeticPen(lineColor));
    m_expected->setPen(graphics::cosmeticPen(expectedColor));
    m_miss->setPen(graphics::cosmeticPen(expectedColor));
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

std::vector<std::unique_ptr<ViewOverlay>> machineOverlays(const Calibration& calibration)
{
    std::vector<std::unique_ptr<ViewOverlay>> overlays;
    const auto origin = calibration.toPixel({0, 0});
    const auto x = calibration.toPixel({1, 0});
    const auto y = calibration.toPixel({0, 1});
    if (!origin || !x || !y)
        return overlays;
    overlays.push_back(std::make_unique<AxesOverlay>(*x - *origin, *y - *origin));
    overlays.push_back(std::make_unique<ScaleBarOverlay>(calibration.mmPerPixelX()));
    return overlays;
}
