#pragma once

#include "render/SpecDraw.h"
#include "render/WheelRenderer.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

/// What a folder of rendered wheels shall hold.
struct WheelSetPlan
{
    int count = 1;
    quint64 seed = 1;
    double withoutHole = 0; ///< fraction of the wheels that have no valve hole
    QStringList designs;    ///< keys, taken in turn; empty: all
    wheel::Difficulty difficulty = wheel::Difficulty::Varied;
    cv::Size size{2448, 2048};
    QString format = QStringLiteral("bmp"); ///< "bmp" or "png"
    int jobs = 1;
};

/// One wheel of a set: its file's name without folder, and all that its rendering needs.
struct PlannedWheel
{
    QString file;
    wheel::WheelSpec spec;
};

namespace WheelSet {

/// The wheels of a set. A wheel's spec depends on the plan's seed and its number, not on `count` or `jobs`. Those
/// without a hole are spread evenly.
QVector<PlannedWheel> wheels(const WheelSetPlan& plan);

/// Real length of an image pixel, for wheels of nominal size that measure 460 mm across the rim.
double mmPerPx(cv::Size size);

/// The entry of one wheel in truth.json.
QJsonObject truthEntry(const PlannedWheel& wheel);

/// Parameters as the bundled engine's models hold them, for a wheel of these nominal lengths (pixels); `spread` is the
/// percentage by which the lengths of single wheels differ from them.
QJsonObject modelParameters(const wheel::Nominal& nominal, double spread);

/// Renders all wheels into `folder`, which is made if missing. Writes params.json there (each image's model parameters
/// by file name) and, last of all, truth.json: a folder with a truth.json is complete. On failure false, and `error`
/// names file and reason.
bool write(const QString& folder, const WheelSetPlan& plan, QString* error);

} // namespace WheelSet
