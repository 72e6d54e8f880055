#pragma once

#include <QImage>
#include <QPointF>
#include <QString>
#include <QVariantMap>

/// The engine's result map as values, with the defaults of keys that are missing.
struct TaskResult
{
    QImage originImage;
    bool calibrated = false;
    QString solution;
    QString taskName;
    double taskTime = 0; ///< milliseconds
    bool hasAlgoResult = false;

    double angle = 365.0; ///< degrees; 365 when the result has none
    int error = 16;
    double score = 0;
    QImage image;
    QString tip;
    QPointF center; ///< pixels
    /// What the answer rests on, of what the engine tells: "score=0.993;second=0.477;edge=32;residual=0.028;rim=808.2;
    /// hole=15.53", without the line break; lengths in pixels. Empty when the engine tells nothing.
    QString evidence;

    static TaskResult fromMap(const QVariantMap& map);
};
