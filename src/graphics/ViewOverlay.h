#pragma once

#include <QRectF>
#include <QTransform>

class QPainter;

/// Something that a view draws over its scene at a fixed place of the screen.
class ViewOverlay
{
public:
    virtual ~ViewOverlay() = default;

    /// \param viewport the view's rectangle, in screen pixels; the painter has no transform
    /// \param viewScale screen pixels for one scene pixel
    virtual void draw(QPainter* painter, const QRectF& viewport, double viewScale) = 0;
};

/// Two arrows in the lower left corner that show where the machine's X and Y point to.
class AxesOverlay : public ViewOverlay
{
public:
    /// Directions as seen in the image (y down); their lengths do not matter.
    AxesOverlay(const QPointF& xDirection, const QPointF& yDirection);

    void draw(QPainter* painter, const QRectF& viewport, double viewScale) override;

private:
    QPointF m_x;
    QPointF m_y;
};

/// A bar in the lower right corner whose length is a round number of millimetres.
class ScaleBarOverlay : public ViewOverlay
{
public:
    /// \param millimetres per scene pixel, in the horizontal direction; positive
    explicit ScaleBarOverlay(double millimetresPerPixel);

    void draw(QPainter* painter, const QRectF& viewport, double viewScale) override;

    /// The largest of 1, 2 and 5 times a power of ten that is not above `length`.
    static double roundLength(double length);

private:
    double m_millimetresPerPixel;
};
