#pragma once

#include <QImage>
#include <QPointF>
#include <QString>
#include <QVariantMap>

/// The engine's result map as values, with the defaults of keys that are missing. Lengths and points in pixels.
struct TaskResult
{
    QImage originImage;
    bool calibrated = false; ///< the model has been taught
    QString solution;
    QString taskName;
    double taskTime = 0;        ///< milliseconds
    bool hasAlgoResult = false; ///< the task could run at all

    double angle = 365.0; ///< degrees; 365 when the result has none, or none that is a number
    int error = 16;
    bool found = false; ///< an angle of the circle, and no error
    double score = 0;
    QImage image; ///< with the drawing of the result
    QString tip;
    QPointF center; ///< the hole's, or the hub's where the solution answers with it
    QPointF hole;   ///< the hole's wherever the engine gives it, else as `center`

    /// What the answer rests on; 0 where the engine leaves it out.
    double runnerUpScore = 0;
    QPointF hubCenter;
    double hubRadius = 0;
    double holeRadius = 0;
    int edgePoints = 0;
    double residual = 0;
    /// The same as a text: "score=0.993;second=0.477;edge=32;residual=0.028;rim=808.2;hole=15.53", followed by what
    /// the engine reports of the mouth's fit. Empty when it reports no edge points.
    QString evidence;

    static TaskResult fromMap(const QVariantMap& map);
};
