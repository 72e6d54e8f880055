#include "PartRow.h"

#include <cmath>

std::optional<double> PartRow::angleErrorDeg() const
{
    if (!found() || !image.hole.value_or(false))
        return {};
    return std::abs(std::remainder(answer.angle - image.angle, 360.0));
}

Verdict PartRow::verdict() const
{
    if (!answered)
        return Verdict::NoAnswer;
    if (!found() && !noticed)
        return Verdict::NoNotice;
    if (!image.hole)
        return Verdict::Answered;
    if (*image.hole != found())
        return found() ? Verdict::Invented : Verdict::Missed;
    return angleErrorDeg().value_or(0) > allowedErrorDeg ? Verdict::Wrong : Verdict::Right;
}

const char* verdictText(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Right:
        return "ok";
    case Verdict::Answered:
        return "answered";
    case Verdict::NoAnswer:
        return "no answer";
    case Verdict::NoNotice:
        return "no H frame";
    case Verdict::Missed:
        return "missed";
    case Verdict::Wrong:
        return "wrong";
    case Verdict::Invented:
        return "invented";
    }
    return "";
}
