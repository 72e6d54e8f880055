#pragma once

#include <QImage>
#include <QPointF>
#include <QVector>
#include <QWidget>

#include <opencv2/core.hpp>

class Loupe;
class PointsItem;
class PolygonItem;
class QLabel;
class TextItem;
class ksImgViewer;
struct AwesomeRoiInfo;
struct SnappedPoint;

/// The picture of a guided calibration: markers that are dragged or moved with the arrow keys, the points of a board,
/// and a loupe that shows where a click would snap to. Points are pixels with parts, the middle of the top-left one
/// being (0, 0). GUI thread.
class CalibrationPicture : public QWidget
{
    Q_OBJECT

public:
    explicit CalibrationPicture(QWidget* parent = nullptr);

    void setPicture(const QImage& picture);
    /// Whether a click snaps to what is near.
    void setSnapping(bool snapping);
    /// Named P1, P2 and so on; or, for a single one, `name`. Replaces those that were.
    void setMarkers(const QVector<QPointF>& points, const QString& name = {});
    /// Shows the points of a board, row by row.
    void setBoard(const QVector<QPointF>& points, int columns);
    /// The feature at a place; no farther away than a marker is large on the screen.
    SnappedPoint snapped(const QPointF& near) const;

    /// For a page's panel, which takes it: shows where a click would snap to.
    Loupe* loupe() const { return m_loupe; }
    const cv::Mat& gray() const { return m_gray; }

signals:
    /// Somebody clicked, and this is what the click snapped to.
    void clicked(const QPointF& point);
    /// A marker was moved by mouse or key.
    void markerMoved(int marker, const QPointF& point);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void onMoved(const AwesomeRoiInfo& info, const QString& name);
    void look(const QPointF& near);
    QPointF fromMiddle(const QPointF& point) const;

    ksImgViewer* m_viewer;
    Loupe* m_loupe;
    PointsItem* m_points = nullptr;
    PolygonItem* m_firstRow = nullptr;
    TextItem* m_first = nullptr;
    cv::Mat m_gray;
    bool m_snapping = false;
    bool m_single = false;
};
