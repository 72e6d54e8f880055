#pragma once

#include "Random.h"
#include "WheelSpec.h"

/// What the wheels of all makes show at and around their valve holes; only varied wheels are drawn so.
namespace wheel {

/// Radius of the mouth as a fraction of the rim's: 8 to 20 mm wide, mostly 11.3 or 15.7, in rims of 330 to 560 mm.
double drawMouth(Random& random);

/// Edge of the hole, with room for it on the ledge, which is widened where needed.
void drawEdge(WheelSpec& spec, Random& random);

/// What is seen in the hole.
void drawInside(WheelSpec& spec, Random& random);

/// Rounds of vents, drains, marks, labels and blots near the hole's ring; none of them touches the hole.
void drawMarks(WheelSpec& spec, Random& random);

} // namespace wheel
