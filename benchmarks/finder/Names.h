#pragma once

#include "SetTally.h"
#include "finder/FindResult.h"

// English names for tables; the finder's own texts are for operators.

inline const char* nameOf(finder::FindError error)
{
    switch (error) {
    case finder::FindError::None:
        return "found";
    case finder::FindError::NoHole:
        return "no hole";
    case finder::FindError::Ambiguous:
        return "ambiguous";
    case finder::FindError::NoHub:
        return "no hub";
    case finder::FindError::CutOff:
        return "cut off";
    case finder::FindError::TooDark:
        return "too dark";
    case finder::FindError::TooBright:
        return "too bright";
    case finder::FindError::OutOfFocus:
        return "out of focus";
    case finder::FindError::BadImage:
        return "bad image";
    case finder::FindError::BadModel:
        return "bad model";
    }
    return "unknown";
}

inline const char* nameOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Found:
        return "found";
    case Verdict::Wrong:
        return "wrong";
    case Verdict::Invented:
        return "invented";
    case Verdict::Missed:
        return "missed";
    case Verdict::RightlyNone:
        break;
    }
    return "none";
}

inline const char* nameOf(Way way)
{
    constexpr const char* names[] = {"taught", "examples", "auto", "hough", "templates"};
    return names[static_cast<size_t>(way)];
}
