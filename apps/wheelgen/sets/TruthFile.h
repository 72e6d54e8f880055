#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

/// The camera that a rendered set was seen by, and how deep the hole lies behind the rim's edge.
struct KnownDepth
{
    double distance = 0; ///< from the camera to the rim's plane, millimetres
    double principalX = 0, principalY = 0;
    double pixelSize = 0; ///< millimetres in the rim's plane
    double hole = 0;      ///< millimetres
};

/// One picture of a rendered set and what is really in it. Lengths are pixels, (0, 0) the middle of the top-left one;
/// what is not there or not known is 0.
struct KnownPicture
{
    QString file; ///< within the set's folder
    bool wheel = true;
    bool hole = false;
    double x = 0, y = 0, holeRadius = 0; ///< of the valve hole's mouth
    double angle = 0;                    ///< degrees, hub centre to hole centre
    double rimRadius = 0, ringRadius = 0;
    KnownDepth depth;
    QString design;
    QStringList causes;     ///< what may make it hard, as "noise" or "edge: ring"
    QVariantMap parameters; ///< of a model that was taught such a wheel
};

/// The truth of a folder of rendered wheels. Two forms are read: the one that WheelSet writes, and a JSON list with the
/// keys image, wheel, valve, cx, cy, vx, vy, vr, angle, tags, rim_r and pitch_r; where it names them, also distance_mm,
/// pp_x, pp_y, mm_per_px and depth_mm.
///
/// Parameters come from the folder's params.json. A picture that it does not name, or a folder without one, gets what a
/// person would have taught: see recipeOf().
class TruthFile
{
public:
    /// False when truth.json or params.json cannot be used; `error` then names file, picture and key.
    bool read(const QString& folder, QString* error);

    const QVector<KnownPicture>& pictures() const { return m_pictures; }

private:
    bool readTruth(const QString& path, QString* error);
    bool readParameters(const QString& path, QString* error);

    QVector<KnownPicture> m_pictures;
};

/// Rim radius off by up to 2 %, ring radius by up to 1 %, hole radius by up to 10 %, all rounded to a tenth of a pixel;
/// tolerances and limits are left to the model's defaults. The same file name gives the same deviations. `mouth` is the
/// hole's radius to teach, where the picture shows no hole that of its kin.
QVariantMap recipeOf(const KnownPicture& picture, double mouth);

/// Gives the pictures without parameters their recipe. Where no wheel is, the model of the wheel before it is in use,
/// at the beginning that of the first.
void completeParameters(QVector<KnownPicture>* pictures);
