#pragma once

#include "ImageCycle.h"
#include "PlcFrames.h"
#include "RoadLog.h"

/// What became of one part.
enum class Verdict {
    Right,    ///< found where it is, or rightly not found
    Answered, ///< answered; the truth is not known
    NoAnswer, ///< no answer frame in time
    NoNotice, ///< an answer without an angle that no "H" frame followed
    Missed,   ///< the wheel has a hole, the answer has no angle
    Wrong,    ///< found in a wrong direction
    Invented, ///< found where there is none
};

/// One part that was fed, and its answer.
struct PartRow
{
    static constexpr double allowedErrorDeg = 0.5;

    int number = 0; ///< counts from 1
    int station = 0;
    KnownImage image;
    bool answered = false;
    bool noticed = false; ///< whether an "H" frame followed
    PlcFrames::Answer answer;
    double latencyMs = 0;                ///< trigger frame's last byte to answer frame's last byte
    std::optional<double> centerErrorPx; ///< distance of the answered from the true centre
    std::optional<RoadTiming> road;      ///< the program's own timing

    bool found() const { return answered && answer.angle < PlcFrames::firstNoAngle; }
    /// Whether the camera was asked: a refused trigger takes no image.
    bool refused() const { return answered && answer.angle == PlcFrames::refusedAngle; }
    /// Whether the engine looked at an image, as far as the answer tells.
    bool hadImage() const { return answered && !refused(); }
    /// Between the answered and the true direction, 0 to 180 degrees; nothing when there are not both.
    std::optional<double> angleErrorDeg() const;
    Verdict verdict() const;
};

/// "ok", "no answer" and so on.
const char* verdictText(Verdict verdict);
/// Whether the part went as it should.
inline bool isGood(Verdict verdict)
{
    return verdict == Verdict::Right || verdict == Verdict::Answered;
}
