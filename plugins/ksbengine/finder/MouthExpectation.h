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
    double major = 0; ///< half of the mouth's longer axis, 0: not known; a tilt shortens the other one only
    double majorSpread = 1;
    double along = 0;       ///< where along x the model's ring lies; beyond a few spreads from there it says nothing
    double alongSpread = 0; ///< 0: not known
};

/// What is expected of an open hole that is seen at `start`, by the gray values of the surface around it and of what
/// lies deep in it.
MouthExpectation expectOpen(const Mouth& start, double surface, double deep);

/// The same hole with something in it: only a band along the mouth counts, whose gray value changes smoothly around;
/// what is deeper may be anything.
MouthExpectation expectFilled(MouthExpectation expected);

/// Adds what a model knows of the hole; `distance` is the start's from the hub, pixels.
void expectTaught(const TaughtMouth& taught, double distance, MouthExpectation* expected);

} // namespace finder
