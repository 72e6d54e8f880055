#include "results/charts/CellPoints.h"

#include <QSet>

#include <cmath>

namespace {

constexpr int cellsAcross = 1600;
constexpr int cellsDown = 900;

QRectF boundsOf(const QVector<QPointF>& points)
{
    if (points.isEmpty())
        return QRectF(0, 0, -1, -1);
    QPointF least = points.first();
    QPointF most = least;
    for (const QPointF& point : points) {
        least = {qMin(least.x(), point.x()), qMin(least.y(), point.y())};
        most = {qMax(most.x(), point.x()), qMax(most.y(), point.y())};
    }
    return QRectF(least, most);
}

} // namespace

CellPoints::CellPoints(const QVector<QPointF>& points, const QVector<qint64>& ids)
{
    for (int i = 0; i < points.size(); ++i) {
        if (!std::isfinite(points.at(i).x()) || !std::isfinite(points.at(i).y()))
            continue;
        m_points.append(points.at(i));
        if (!ids.isEmpty())
            m_ids.append(ids.at(i));
    }
    m_bounds = boundsOf(m_points);
}

void CellPoints::setRectOfInterest(const QRectF& rect)
{
    choose(rect.normalized());
}

void CellPoints::choose(const QRectF& rect)
{
    m_shown.clear();
    const double across = rect.width() > 0 ? cellsAcross / rect.width() : 0;
    const double down = rect.height() > 0 ? cellsDown / rect.height() : 0;
    QVector<bool> taken((cellsAcross + 1) * (cellsDown + 1));
    for (int i = 0; i < m_points.size(); ++i) {
        const double x = (m_points.at(i).x() - rect.left()) * across;
        const double y = (m_points.at(i).y() - rect.top()) * down;
        if (x < 0 || x > cellsAcross || y < 0 || y > cellsDown)
            continue;
        bool& cell = taken[int(y) * (cellsAcross + 1) + int(x)];
        if (!cell)
            m_shown.append(i);
        cell = true;
    }
}
