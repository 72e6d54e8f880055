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

    static TaskResult fromMap(const QVariantMap& map);
};
