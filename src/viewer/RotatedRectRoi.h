#pragma once

#include "viewer/RectRoi.h"

/// A rectangle that can also be turned, by dragging around it.
class RotatedRectRoi : public RectRoi
{
    Q_OBJECT

public:
    using RectRoi::RectRoi;

    RoiShape roiShape() const override { return RoiShape::RotatedRect; }

    /// The cursor over a point of the item: over a handle its resize cursor, inside the body the four-way move cursor,
    /// anywhere else, and while it is being turned, the rotation cursor of the point's sector.
    QCursor cursorAt(const QPointF& at) const override;

    /// In which eighth of the surroundings a point of the item lies: 0 around +x, then clockwise.
    static int sectorOf(const QPointF& at);

protected:
    double reachPx() const override;
    bool beginDrag(const QPointF& at) override;
    void dragTo(const QPointF& at) override;
    void endDrag() override { m_turning = false; }

private:
    bool m_turning = false; ///< rotation mode: from pressing beside the body until the release
    double m_turnStart = 0; ///< rotation minus the mouse's direction, degrees
};
