#include "viewer/RotatedRectRoi.h"

#include "graphics/ViewScale.h"
#include "viewer/RoiCursors.h"

#include <QtMath>

namespace {

/// Clockwise from +x, as rotations of items count.
double directionOf(const QPointF& vector)
{
    return qRadiansToDegrees(std::atan2(vector.y(), vector.x()));
}

} // namespace

int RotatedRectRoi::sectorOf(const QPointF& at)
{
    return (qRound(directionOf(at) / 45.0) + 8) % 8;
}

double RotatedRectRoi::reachPx() const
{
    return handlesShown() ? 2.5 * graphics::hitRadiusPx : 0.0;
}

QCursor RotatedRectRoi::cursorAt(const QPointF& at) const
{
    if (!m_turning && (handleAt(at) != noHandle || bodyRect().contains(at)))
        return RectRoi::cursorAt(at);
    return RoiCursors::rotation(sectorOf(at) + RoiCursors::rotationOffset(rotation()));
}

bool RotatedRectRoi::beginDrag(const QPointF& at)
{
    if (RectRoi::beginDrag(at))
        return true;
    m_turning = true;
    m_turnStart = rotation() - directionOf(mapToParent(at) - pos());
    return true;
}

void RotatedRectRoi::dragTo(const QPointF& at)
{
    if (m_turning)
        setRotation(std::remainder(m_turnStart + directionOf(mapToParent(at) - pos()), 360.0));
    else
        RectRoi::dragTo(at);
}
