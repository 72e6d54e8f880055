#include "MouthExpectation.h"

#include "MouthFit.h"

#include <algorithm>

namespace finder {

namespace {

// To within these shares a taught radius and its ring are right: wheels are drilled alike.
constexpr double drilledAlike = 0.02;
constexpr double placedAlike = 0.001;

} // namespace

MouthExpectation expectOpen(const Mouth& start, double surface, double deep)
{
    MouthExpectation expected;
    MouthVector& value = expected.value;
    MouthVector& spread = expected.spread;
    const double contrast = std::max(10.0, surface - deep);
    const double radius = start.radius;
    value[R] = radius;
    spread[X] = spread[Y] = spread[R] = 0.15 * radius;
    // The ledge lies in a slope, so that the hole is seen narrower along the direction from the hub.
    value[E] = 0.12;
    spread[E] = 0.1;
    spread[F] = 0.05;
    value[Chamfer] = 0.12 * radius;
    spread[Chamfer] = 0.1 * radius;
    value[Scaled] = 0.5;
    spread[Scaled] = 0.5;
    // An image that was enlarged is blurred in proportion; where nothing is enlarged the lens decides.
    value[Blur] = std::max(start.blur, 0.07 * radius);
    spread[Blur] = 0.5 * value[Blur];
    spread[Turn] = 1;
    // From above the wheel's middle, what lies deeper is seen nearer to the hub.
    value[WallX] = -0.2 * radius;
    spread[WallX] = 0.2 * radius;
    spread[WallY] = 0.15 * radius;
    value[Far] = 1;
    spread[Far] = 0.03;
    value[Surface0] = value[Chamfer0] = surface;
    value[Wall0] = 0.6 * deep + 0.4 * surface;
    value[Deep] = deep;
    spread[SurfaceX] = spread[SurfaceY] = contrast / radius;
    for (const int i : {Surface0, Chamfer0, ChamferC, ChamferS})
        spread[i] = 0.5 * contrast;
    for (const int i : {Wall0, WallC, WallS, Deep})
        spread[i] = 0.3 * contrast;
    return expected;
}

MouthExpectation expectFilled(MouthExpectation expected)
{
    expected.value[Wall0] = expected.value[Deep];
    expected.value[Far] = 0.2;
    expected.value[WallX] = 0;
    for (const int i : {Far, WallX, WallY})
        expected.spread[i] = 1e-3;
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
