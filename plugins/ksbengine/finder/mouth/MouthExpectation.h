#pragma once

#include "MouthModel.h"

namespace finder {

struct Mouth;
struct TaughtMouth;

/// What is expected of each parameter before looking, and how much it may differ (standard deviations).
struct MouthExpectation
{
    MouthVector value{};
    MouthVector spread{};
    double leastNoise = 1; ///< what no picture of a hole is right to, gray levels
    double tolerance = 0;  ///< errors below that are no outliers, gray levels
    double major = 0;      ///< half of the mouth's longer axis, 0: not known; a tilt shortens the other one only
    double majorSpread = 1;
    double along = 0;       ///< where along x the model's ring lies; beyond a few spreads from there it has no weight
    double alongSpread = 0; ///< 0: not known
};

/// Gray values around and in a hole, before anything is fitted.
struct MouthLevels
{
    double surface = 0;  ///< around
    double deep = 0;     ///< of most of the inside
    double darkest = 0;  ///< of the inside
    double contrast = 0; ///< between what differs most, at least 10
};

/// What is expected of a hole that is seen at `start`.
MouthExpectation expectMouth(const Mouth& start, const MouthLevels& levels);

/// Adds what a model knows of the hole; `distance` is the start's from the hub, pixels.
void expectTaught(const TaughtMouth& taught, double distance, MouthExpectation* expected);

} // namespace finder
