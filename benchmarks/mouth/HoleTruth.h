#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <opencv2/core.hpp>

/// Where the hole of one image is; pixels, NaN where the set does not say.
struct HoleTruth
{
    QString file; ///< with its folder
    cv::Point2d center;
    cv::Point2d hub;
    double major = 0; ///< half axes of the mouth, the bore's upper edge
    double minor = 0;
    double outer = 0;  ///< radius of the outer edge of chamfer or counterbore, `major` without one
    QStringList kinds; ///< what it is like: edge, what stands inside, stress
};

/// Reads a set's truth.json, by wheelgen or by a renderer that writes a list of images. Images without a hole are left
/// out. On failure returns none and a sentence in `error`.
QVector<HoleTruth> readTruth(const QString& folder, QString* error);
