#pragma once

#include "Geometry.h"
#include "finder/mouth/MouthFit.h"

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

/// What speaks most against the best place, where none was answered.
enum class Doubt {
    None,
    NothingSeen, ///< no place looks like anything
    Ragged,      ///< ragged outline: dirt, rust, a drop
    Flat,        ///< round, but nothing deep
    Letter,      ///< a letter or a digit
    Edge,        ///< a slot, or the edge of an opening
    OffRing,     ///< a hole, but not where the model has one
    OtherSize,   ///< a hole, but not as large as the model's
    Rejected,    ///< like what was rejected when the model was taught
    OneOfMany,   ///< one of a round of holes alike
    TwoAlike,    ///< another place is as good
};

/// In a few words; empty for None.
QString doubtText(Doubt doubt);

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
    cv::Point2d axis;         ///< the hub axis at the hole's depth: the hub's centre where camera or depth is unknown
    double score = 0;         ///< probability that the best candidate is the hole, 0 to 1
    double runnerUpScore = 0; ///< of the second best candidate
    Doubt doubt = Doubt::None;
    int edgePoints = 0;     ///< that the hole's outline rests on
    double residual = 0;    ///< of those points, root mean square in pixels
    Mouth mouth;            ///< what the hole's centre and radius come from; not valid: from the judge's circle instead
    double rimCoverage = 0; ///< share of the rim that was seen, 0 to 1

    bool found() const { return error == FindError::None; }
};

/// resultTip() of an outcome, with what spoke against the best place.
QString tipOf(const FindResult& result);

} // namespace finder
