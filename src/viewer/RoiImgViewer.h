#pragma once

#include "viewer/AwesomeImgViewer.h"
#include "viewer/RoiItem.h"

#include <QRectF>
#include <QVector>

/// An image viewer with regions of interest. The regions keep to their image pixels when the image's size changes.
class RoiImgViewer : public AwesomeImgViewer
{
    Q_OBJECT

public:
    using AwesomeImgViewer::AwesomeImgViewer;

    /// Adds a point at a position relative to the image's centre, in image pixels.
    /// \param size diameter of the marker, image pixels
    RoiItem* addPointRoi(const QPointF& position, const QColor& color, const QColor& selectedColor, double size,
                         const QString& name);
    /// Adds a rectangle; `rect` is in image pixels, (0, 0) the top-left corner of the image.
    RoiItem* addRectRoi(const QRectF& rect, const QColor& color, const QColor& selectedColor, const QString& name);
    /// As addRectRoi(), turned by degrees clockwise about its centre.
    RoiItem* addRotatedRectRoi(const QRectF& rect, double rotation, const QColor& color, const QColor& selectedColor,
                               const QString& name);

    const QVector<RoiItem*>& rois() const { return m_rois; }
    RoiItem* roi(const QString& name) const; ///< null when there is none

    void removeAllRois();
    void showRoiHandles(bool shown = true);
    void lockRois(bool locked = true);

    /// Brings the region that was moved last back to where it was. False when there is nothing to undo.
    bool undoMove();

protected:
    void fillMenu(QMenu* menu) override;
    void imageResized(const QSize& old) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Move
    {
        RoiItem* roi;
        RoiPlace from;
    };

    RoiItem* add(RoiItem* roi, const RoiPlace& place);
    /// Remembers for undoMove() where the region was; a row of arrow keys held down counts as one move.
    void onMoveBegins(const RoiPlace& from);
    void onPlaceChanged();

    QVector<RoiItem*> m_rois; ///< the scene's
    QVector<Move> m_moves;    ///< the latest at the end
};
