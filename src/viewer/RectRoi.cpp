#include "viewer/RectRoi.h"

#include "graphics/ViewScale.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QtMath>

#include <array>
#include <cmath>

namespace {

constexpr double handlePx = 4.0;
constexpr double smallestSide = 1.0; ///< image pixels

/// The handles' places as multiples of half the sides, by direction.
constexpr std::array<std::array<int, 2>, 8> handlePlaces{
    {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}}};

/// One axis of a resize: the side opposite to the handle stays.
void resizeAxis(int sign, double mouse, double& length, double& shift)
{
    if (sign == 0)
        return;
    const double fixed = -sign * length / 2.0;
    length = std::max(smallestSide, sign * (mouse - fixed));
    shift = fixed + sign * length / 2.0;
}

/// Clockwise from +x, as rotations of items count.
double directionOf(const QPointF& vector)
{
    return qRadiansToDegrees(std::atan2(vector.y(), vector.x()));
}

} // namespace

RectRoi::RectRoi(const QString& name, const QColor& color, const QColor& selectedColor, const QSizeF& size)
    : RoiItem(name, color, selectedColor)
{
    setSize(size);
}

QRectF RectRoi::bodyRect() const
{
    return {-size().width() / 2, -size().height() / 2, size().width(), size().height()};
}

double RectRoi::reachPx() const
{
    return handlesShown() ? graphics::hitRadiusPx : 0.0;
}

QPainterPath RectRoi::shape() const
{
    const double reach = reachPx() * graphics::pixelLength(*this);
    QPainterPath path;
    path.addRect(bodyRect().adjusted(-reach, -reach, reach, reach));
    return path;
}

QPointF RectRoi::handlePoint(int direction) const
{
    return {handlePlaces[direction][0] * size().width() / 2, handlePlaces[direction][1] * size().height() / 2};
}

int RectRoi::handleAt(const QPointF& at) const
{
    if (!handlesShown())
        return noHandle;
    // On a small region the handles give way, so that its body can still be met.
    const double third = std::min(size().width(), size().height()) / 3.0;
    const double pixel = graphics::pixelLength(*this);
    double nearest = std::max(handlePx * pixel, std::min(graphics::hitRadiusPx * pixel, third));
    int handle = noHandle;
    for (int i = 0; i < 8; ++i) {
        const double distance = QLineF(at, handlePoint(i)).length();
        if (distance <= nearest) {
            nearest = distance;
            handle = i;
        }
    }
    return handle;
}

bool RectRoi::beginDrag(const QPointF& at)
{
    m_handle = handleAt(at);
    m_grabbedAt = m_handle == noHandle ? at : at - handlePoint(m_handle);
    return m_handle != noHandle || bodyRect().contains(at);
}

void RectRoi::dragTo(const QPointF& at)
{
    if (m_handle == noHandle)
        setPos(mapToParent(at - m_grabbedAt));
    else
        resizeTo(at - m_grabbedAt);
}

void RectRoi::resizeTo(const QPointF& at)
{
    double width = size().width();
    double height = size().height();
    QPointF center;
    resizeAxis(handlePlaces[m_handle][0], at.x(), width, center.rx());
    resizeAxis(handlePlaces[m_handle][1], at.y(), height, center.ry());
    const QPointF moved = mapToParent(center);
    setSize({width, height});
    setPos(moved);
}

QCursor RectRoi::cursorAt(const QPointF& at) const
{
    const int handle = handleAt(at);
    if (handle != noHandle)
        return RoiCursors::resize(handle, RoiCursors::rotationOffset(rotation()));
    return bodyRect().contains(at) ? Qt::SizeAllCursor : Qt::ArrowCursor;
}

/// Handles keep their screen size; a locked region shows none, since they would do nothing.
void RectRoi::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    QPainterPath outline;
    outline.addRect(bodyRect());
    graphics::strokeOutlined(painter, outline, outlinePen());
    drawName(painter);
    if (!handlesShown() || isLocked())
        return;
    painter->setPen(graphics::forScreen(graphics::cosmeticPen(outlinePen().color()), *painter));
    painter->setBrush(Qt::white);
    const double half = handlePx * graphics::pixelLength(*this);
    for (int i = 0; i < 8; ++i)
        painter->drawRect(QRectF(handlePoint(i) - QPointF(half, half), QSizeF(2 * half, 2 * half)));
}

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

namespace RoiCursors {

int rotationOffset(double rotation)
{
    float r = std::fmod(static_cast<float>(rotation), 360.0f);
    if (r < 0)
        r += 360.0f;
    if (r >= 337.5f || r <= 22.5f)
        return 0;
    return static_cast<int>(std::ceil((r - 22.5f) / 45.0f));
}

QCursor rotation(int index)
{
    static const std::array<QCursor, 8> cursors = [] {
        std::array<QCursor, 8> built;
        for (int i = 0; i < 8; ++i)
            built[i] = QCursor(QPixmap(QStringLiteral(":/cursor_rotate_%1.png").arg(45 * i)));
        return built;
    }();
    return cursors[((index % 8) + 8) % 8];
}

Qt::CursorShape resize(int direction, int offset)
{
    static constexpr std::array<Qt::CursorShape, 4> shapes{Qt::SizeHorCursor, Qt::SizeFDiagCursor, Qt::SizeVerCursor,
                                                           Qt::SizeBDiagCursor};
    return shapes[(direction + offset) % 4];
}

} // namespace RoiCursors
