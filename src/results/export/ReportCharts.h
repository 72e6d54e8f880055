#pragma once

#include "results/data/Statistics.h"

#include <QRectF>

class QPainter;

/// Charts on paper, in light colours, with the painter's font. Any thread.
namespace ReportCharts {

/// Parts by their outcome upon each other, and the yield as a line.
void yield(QPainter& painter, const QRectF& place, const QVector<Statistics::Bucket>& buckets,
           const QString& timeFormat, const QStringList& legend);
/// A bar for each name, the number behind it.
void bars(QPainter& painter, const QRectF& place, const QVector<QPair<QString, int>>& bars);
/// A dot for each value by its time between `begin` and `end`; no more dots than paper tells apart.
void trend(QPainter& painter, const QRectF& place, const QString& title, qint64 begin, qint64 end,
           const QVector<qint64>& walls, const QVector<double>& values);
/// With the normal curve, and `note` beside it.
void distribution(QPainter& painter, const QRectF& place, const Statistics::Histogram& histogram, const QString& note);

} // namespace ReportCharts
