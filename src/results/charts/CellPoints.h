#pragma once

#include <QVector>
#include <qwt_series_data.h>

/// Points of which no more are drawn than can be told apart: in the part of the plane that is shown, one of each cell
/// of a grid as fine as a large screen. A point keeps the number that it came with.
class CellPoints : public QwtSeriesData<QPointF>
{
public:
    /// Points that are not finite are left out. `ids` are as many, or none.
    CellPoints(const QVector<QPointF>& points, const QVector<qint64>& ids = {});

    size_t size() const override { return size_t(m_shown.size()); }
    QPointF sample(size_t i) const override { return m_points.at(m_shown.at(int(i))); }
    QRectF boundingRect() const override { return m_bounds; }
    void setRectOfInterest(const QRectF& rect) override;

    qint64 id(int shown) const { return m_ids.value(m_shown.value(shown, -1), -1); }

private:
    void choose(const QRectF& rect);

    QVector<QPointF> m_points;
    QVector<qint64> m_ids;
    QRectF m_bounds;
    QVector<int> m_shown;
};
