#pragma once

#include <QImage>
#include <QPointF>
#include <QVariantMap>

/// One answer of the engine, taken out of its map. What the engine left out is 0, empty or null.
struct TaskResult
{
    bool ran = false;   ///< the task could run at all
    bool found = false; ///< a hole was found
    double angle = 0;   ///< degrees
    QPointF center;     ///< pixels; the hole's, or the hub's where the solution answers with it
    QPointF hole;       ///< pixels; the hole's wherever the engine gives it, else as `center`
    double score = 0;
    double runnerUpScore = 0;
    int error = 0;
    QString tip;
    QImage image; ///< with the drawing of the result
    QPointF hubCenter;
    double hubRadius = 0;
    double holeRadius = 0;
    int edgePoints = 0;
    double residual = 0;     ///< pixels
    double milliseconds = 0; ///< in the engine
    bool taught = false;

    static TaskResult fromMap(const QVariantMap& map);
};
