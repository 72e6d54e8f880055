#include "MouthExpectation.h"

#include "MouthFit.h"

#include <algorithm>

namespace finder {

namespace {

// To within these shares a taught radius and its ring are right: wheels are drilled alike.
constexpr double drilledAlike = 0.02;
constexpr double placedAlike = 0.001;

// Shares of the radius and of the contrast, found by trying values on the holes of four renderers, ray-traced ones
// among them, and keeping what none of them spoke against; half or twice of most changes little.
void expectShape(const Mouth& start, MouthExpectation* expected)
{
    MouthVector& value = expected->value;
    MouthVector& spread = expected->spread;
    const double radius = start.radius;
    value[R] = radius;
    spread[X] = spread[Y] = 0.12 * radius;
    spread[R] = 0.1 * radius;
    // The ledge lies in a slope, so that the hole is seen narrower along the direction from the hub.
    value[E] = 0.12;
    spread[E] = 0.1;
    spread[F] = 0.05;
    // Chamfers and counterbores are up to 0.6 of the radius wide.
    const bool outer = start.outerRadius > radius && start.outerRadius < 1.7 * radius;
    value[Chamfer] = outer ? start.outerRadius - radius : 0.15 * radius;
    spread[Chamfer] = outer ? 0.15 * radius : 0.2 * radius;
    value[Scaled] = 0.5;
    spread[Scaled] = 0.5;
    // From above the wheel's centre, what lies deeper is seen nearer to the hub: the mouth against its outer edge, and
    // the far end against the mouth.
    value[OuterX] = 0.01 * radius;
    spread[OuterX] = 0.04 * radius;
    spread[OuterY] = 0.025 * radius;
    value[WallX] = -0.2 * radius;
    spread[WallX] = 0.2 * radius;
    spread[WallY] = 0.15 * radius;
    // A bore is as wide at its far end: what is seen as a wall all round is a chamfer.
    value[Far] = 1;
    spread[Far] = 0.007;
    // An image that was enlarged is blurred in proportion; where nothing is enlarged the lens decides.
    value[Blur] = std::max(start.blur, 0.07 * radius);
    spread[Blur] = 0.5 * value[Blur];
    spread[Turn] = 4;
}

void expectGrays(const MouthLevels& levels, double radius, MouthExpectation* expected)
{
    MouthVector& value = expected->value;
    MouthVector& spread = expected->spread;
    const double contrast = levels.contrast;
    value[Surface0] = value[Chamfer0] = levels.surface;
    for (const int i : {Surface0, Chamfer0, ChamferC, ChamferS})
        spread[i] = 0.5 * contrast;
    spread[SurfaceX] = spread[SurfaceY] = contrast / radius;
    spread[ChamferOut] = 0.15 * contrast;
    // Most walls are nearly as dark as the darkest in the hole, also where something bright is seen through it.
    value[Wall0] = levels.darkest + 0.1 * (levels.surface - levels.darkest);
    value[Deep] = levels.deep;
    for (const int i : {Wall0, WallC, WallS, Deep})
        spread[i] = 0.25 * contrast;
    expected->tolerance = 0.06 * contrast;
    expected->leastNoise = std::max(1.0, 0.025 * contrast);
}

} // namespace

MouthExpectation expectMouth(const Mouth& start, const MouthLevels& levels)
{
    MouthExpectation expected;
    expectShape(start, &expected);
    expectGrays(levels, start.radius, &expected);
    return expected;
}

void expectTaught(const TaughtMouth& taught, double distance, MouthExpectation* expected)
{
    expected->major = taught.radius;
    expected->majorSpread = drilledAlike * taught.radius;
    expected->along = taught.ring - distance;
    expected->alongSpread = placedAlike * taught.ring;
}

} // namespace finder
