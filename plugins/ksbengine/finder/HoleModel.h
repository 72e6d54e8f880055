#pragma once

#include "Perspective.h"

#include <QString>
#include <QVariantMap>

#include <memory>

namespace finder {

struct HoleExamples;

/// What is known about a kind of wheel. A radius of 0 is unknown and leaves the broad limits of the built-in model.
struct HoleModel
{
    double rimRadius = 0;      ///< outer edge of the rim, pixels
    double rimTolerance = 12;  ///< percent of rimRadius
    double ringRadius = 0;     ///< hub centre to hole centre, pixels, at a rim of rimRadius
    double ringTolerance = 3;  ///< percent of ringRadius
    double holeRadius = 0;     ///< mouth of the hole, pixels, at a rim of rimRadius
    double holeTolerance = 25; ///< percent of holeRadius
    double scoreLimit = 0.5;   ///< a hole with a lower score is refused, 0 to 1
    double holeDepth = 0;      ///< of the hole behind the rim's edge, millimetres; negative: nearer to the camera
    bool taught = false;
    Camera camera; ///< of the station; no parameter of the model, the solution sets it
    /// What the model has been shown, shared by all copies of the model; null when it has been shown nothing.
    std::shared_ptr<const HoleExamples> examples;

    /// Where the rim may lie in an image of this height.
    Range rimRange(double imageHeight) const;
    /// Where the hole's centre may lie once a rim of this radius was found.
    Range ringRange(double foundRim) const;
    /// How large the hole may be once a rim of this radius was found.
    Range holeRange(double foundRim) const;

private:
    double scale(double foundRim) const { return rimRadius > 0 ? foundRim / rimRadius : 1; }
};

/// Name of the built-in model, present in every solution.
QString autoModelName();
/// The built-in model: rim 25 to 50 % of the image height, hole of 1.2 to 6 % of the rim's radius between lip and
/// spokes. It needs no teaching and counts as taught.
HoleModel autoModel();

/// Names, types and defaults as in the model files; see ISolutionStore.h. Values that are missing keep what `model`
/// holds. A value that is no number, out of range or contradicts another leaves `model` alone, returns false and names
/// the value in `error`.
bool applyParameters(const QVariantMap& parameters, HoleModel* model, QString* error);
QVariantMap parametersOf(const HoleModel& model);

} // namespace finder
