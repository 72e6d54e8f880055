#pragma once

#include "finder/Finder.h"

#include <valvecell/IModelTrial.h>

/// What the finder saw on its way to `found` in `gray`, for people: hub fit, unwrapped ring, candidates with their
/// scores, edge points, residuals, the mouth, up to the stage that failed. `finder` is as its last find() left it. Any
/// thread.
QVector<TrialStage> trialStages(const cv::Mat& gray, const finder::Finder& finder, const finder::FindResult& found,
                                const finder::HoleModel& model);
