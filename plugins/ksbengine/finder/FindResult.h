#pragma once

#include "Geometry.h"

#include <QString>

namespace finder {

/// Why there is no hole to report. The numbers are the "error" of the result map and stay as they are.
enum class FindError : int {
    None = 0,
    NoHole = 1,
    Ambiguous = 2,
    NoHub = 3,
    CutOff = 4,
    TooDark = 5,
    TooBright = 6,
    OutOfFocus = 7,
    BadImage = 8,
    BadModel = 9,
};

/// The operator's short text for an outcome.
QString resultTip(FindError error);

/// What a PLC reads as "nothing found".
constexpr double nothingFoundAngle = 361.0;

/// The answer for one image. Fields that an outcome does not reach keep their defaults; the hub is given whenever it
/// was found, also on a refusal.
struct FindResult
{
    FindError error = FindError::BadImage;
    double angle = nothingFoundAngle; ///< degrees, see screenAngle()
    cv::Point2d hole;
    double holeRadius = 0;
    Outline hub;              ///< the rim's outer edge around the hub centre
    double score = 0;         ///< of the best candidate, 0 to 1
    double runnerUpScore = 0; ///< of the second best candidate
    int edgePoints = 0;       ///< that the hole's outline rests on
    double residual = 0;      ///< of those points, root mean square in pixels
    double rimCoverage = 0;   ///< share of the rim that was seen, 0 to 1

    bool found() const { return error == FindError::None; }
};

} // namespace finder
