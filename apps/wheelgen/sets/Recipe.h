#pragma once

#include "TruthFile.h"

/// Rim radius off by up to 2 %, ring radius by up to 1 %, hole radius by up to 10 %, all rounded to a tenth of a pixel;
/// tolerances and limits are left to the model's defaults. The same file name gives the same deviations. `mouth` is the
/// hole's radius to teach, where the picture shows no hole that of its kin.
QVariantMap recipeOf(const KnownPicture& picture, double mouth);

/// Gives the pictures without parameters their recipe. Where no wheel is, the model of the wheel before it is in use,
/// at the beginning that of the first.
void completeParameters(QVector<KnownPicture>* pictures);
