#include "viewer/RoiImgViewer.h"

#include "graphics/ImageItem.h"
#include "viewer/PointRoi.h"
#include "viewer/RectRoi.h"

#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

namespace {
/// Moves that can be undone.
constexpr int mostMoves = 50;
} // namespace

RoiItem* RoiImgViewer::addPointRoi(const QPointF& position, const QColor& color, const QColor& selectedColor,
                                   double size, const QString& name)
{
    return add(new PointRoi(name, color, selectedColor, size), {position, {size, size}, 0});
}

RoiItem* RoiImgViewer::addRectRoi(const QRectF& rect, const QColor& color, const QColor& selectedColor,
                                  const QString& name)
{
    const QPointF position = rect.center() - QRectF(QPointF(), imageSize()).center();
    return add(new RectRoi(name, color, selectedColor, rect.size()), {position, rect.size(), 0});
}

RoiItem* RoiImgViewer::addRotatedRectRoi(const QRectF& rect, double rotation, const QColor& color,
                                         const QColor& selectedColor, const QString& name)
{
    const QPointF position = rect.center() - QRectF(QPointF(), imageSize()).center();
    return add(new RotatedRectRoi(name, color, selectedColor, rect.size()), {position, rect.size(), rotation});
}

RoiItem* RoiImgViewer::add(RoiItem* roi, const RoiPlace& place)
{
    if (!imageItem())
        setImage(QImage());
    roi->setParentItem(imageItem());
    roi->setPlace(place);
    connect(roi, &RoiItem::moveBegins, this, &RoiImgViewer::onMoveBegins);
    connect(roi, &RoiItem::placeChanged, this, &RoiImgViewer::onPlaceChanged);
    connect(roi, &RoiItem::lockedTouched, this, [this, roi] { emit roiLockIng(roi->name()); });
    m_rois.append(roi);
    emit roiChanged();
    return roi;
}

RoiItem* RoiImgViewer::roi(const QString& name) const
{
    const auto found =
        std::find_if(m_rois.cbegin(), m_rois.cend(), [&](const RoiItem* roi) { return roi->name() == name; });
    return found == m_rois.cend() ? nullptr : *found;
}

void RoiImgViewer::removeAllRois()
{
    m_moves.clear();
    qDeleteAll(std::exchange(m_rois, {}));
    emit roiChanged();
}

void RoiImgViewer::showRoiHandles(bool shown)
{
    for (RoiItem* roi : qAsConst(m_rois))
        roi->setHandlesShown(shown);
}

void RoiImgViewer::lockRois(bool locked)
{
    for (RoiItem* roi : qAsConst(m_rois))
        roi->setLocked(locked);
}

/// A locked region stays where it is, and so do the moves before it.
bool RoiImgViewer::undoMove()
{
    if (m_moves.isEmpty() || m_moves.constLast().roi->isLocked())
        return false;
    const Move last = m_moves.takeLast();
    last.roi->setPlace(last.from);
    return true;
}

void RoiImgViewer::fillMenu(QMenu* menu)
{
    AwesomeImgViewer::fillMenu(menu);
    if (m_rois.isEmpty())
        return;
    menu->addSeparator();
    QAction* undo = menu->addAction(tr("撤销移动\tCtrl+Z"), this, [this] { undoMove(); });
    undo->setEnabled(!m_moves.isEmpty() && !m_moves.constLast().roi->isLocked());
}

/// Items lie relative to the image's centre, which has moved; what could be undone moves along.
void RoiImgViewer::imageResized(const QSize& old)
{
    const QPointF shift((old.width() - imageSize().width()) / 2.0, (old.height() - imageSize().height()) / 2.0);
    for (RoiItem* roi : qAsConst(m_rois))
        roi->setPos(roi->pos() + shift);
    for (Move& move : m_moves)
        move.from.pos += shift;
}

void RoiImgViewer::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Undo))
        undoMove();
    else
        AwesomeImgViewer::keyPressEvent(event);
}

void RoiImgViewer::onMoveBegins(const RoiPlace& from)
{
    m_moves.append({static_cast<RoiItem*>(sender()), from});
    if (m_moves.size() > mostMoves)
        m_moves.removeFirst();
}

void RoiImgViewer::onPlaceChanged()
{
    const auto* roi = static_cast<RoiItem*>(sender());
    emit filterroiChanged(roi->info(), roi->name());
    emit roiChanged();
}
