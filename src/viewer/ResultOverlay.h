#pragma once

#include "graphics/OverlayItem.h"

/// What an engine found on a wheel. Image pixels, the middle of the top-left pixel is (0, 0).
struct ResultDrawing
{
    QPointF hole;
    double holeRadius = 0; ///< 0: unknown, as the others
    QPointF hub;
    double hubRadius = 0; ///< outer edge of the rim
    double angle = 0;     ///< degrees, hub to hole, 0 along +x, counter-clockwise as seen
};

/// Draws a result over its image, sharp at any zoom: rim, hub, the way to the hole with its angle, and the hole. Owns
/// nothing: its items are children of the image item.
class ResultOverlay
{
public:
    explicit ResultOverlay(QGraphicsItem* image);

    /// \param origin the item point that is the middle of the top-left pixel
    void show(const ResultDrawing& drawing, const QPointF& origin);
    void hide();

private:
    QVector<OverlayItem*> m_items;
    ArcItem* m_rim;
    ArcItem* m_hole;
    ArcItem* m_turn;
    PolygonItem* m_way;
    PointsItem* m_centers;
    TextItem* m_angle;
};
