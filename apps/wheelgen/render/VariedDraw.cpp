#include "VariedDraw.h"

#include "WheelFace.h"

#include <algorithm>
#include <cmath>

namespace wheel {

namespace {

constexpr double kLeastMouth = 0.013, kGreatestMouth = 0.055; // of the rim's radius
constexpr double kGreatestReach = 0.080;                      // of an edge, of the rim's radius
constexpr double kLedgeMargin = 0.008;                        // between edge and ledge, of the rim's radius

/// Under a dome nothing has a side that is turned to the light.
bool underDome(const WheelSpec& spec)
{
    return spec.light.diffuse < 0.2;
}

double ringGray(const WheelSpec& spec, Random& random)
{
    return underDome(spec) || random.chance(0.25) ? random.range(0.9, 1.1) : random.range(0.35, 1.9);
}

void drawRing(WheelSpec& spec, Random& random)
{
    HoleSpec& hole = spec.hole;
    hole.edge = HoleEdge::Ring;
    hole.chamfer = random.range(0.06, 0.5) * hole.radius;
    hole.chamferGray = ringGray(spec, random);
    hole.chamferShine = random.range(0, 0.15);
}

void drawCounterbore(WheelSpec& spec, Random& random)
{
    HoleSpec& hole = spec.hole;
    hole.edge = HoleEdge::Counterbore;
    hole.chamfer = random.chance(0.5) ? random.range(0.03, 0.2) * hole.radius : 0;
    hole.chamferGray = ringGray(spec, random);
    hole.step = random.range(0.15, 0.9) * hole.radius;
    hole.stepDepth = random.range(0.04, 0.3) * hole.radius;
    hole.stepGray = random.range(0.6, 1.35);
    hole.stepShadow = underDome(spec) ? random.range(0.1, 0.3) : random.range(0.2, 0.85);
}

/// The ledge holds the edge wholly; where it is too narrow it begins nearer to the hub.
void makeRoom(WheelSpec& spec)
{
    FaceSpec& face = spec.face;
    const double need = spec.hole.reach() / spec.rimRadius + kLedgeMargin;
    face.ledgeInner = std::min(face.ledgeInner, face.lipInner - 2 * need);
    face.windowOuter = std::min(face.windowOuter, face.ledgeInner - 0.03);
    face.ring = std::clamp(face.ring, face.ledgeInner + need, face.lipInner - need);
    spec.hole.ringRadius = face.ring * spec.rimRadius;
}

} // namespace

double drawMouth(Random& random)
{
    const double rim = random.range(330, 560), kind = random.unit();
    const double mouth = kind < 0.35  ? random.range(10.9, 11.7)
                         : kind < 0.7 ? random.range(15.3, 16.1)
                                      : random.range(7, 20);
    return std::clamp(mouth / rim, kLeastMouth, kGreatestMouth);
}

void drawEdge(WheelSpec& spec, Random& random)
{
    HoleSpec& hole = spec.hole;
    const double kind = random.unit();
    if (kind > 0.65)
        drawCounterbore(spec, random);
    else if (kind > 0.3 || underDome(spec))
        drawRing(spec, random);
    const double room = kGreatestReach * spec.rimRadius - hole.radius;
    const double shrink = std::min(1.0, room / std::max(1e-9, hole.chamfer + hole.step));
    hole.chamfer *= shrink;
    hole.step *= shrink;
    // The outer edge lies nearer to the camera than the mouth, the far end further away.
    const double seen = cv::norm(hole.wall), shift = random.range(0, 0.35) * (hole.chamfer + hole.step);
    if (hole.edge != HoleEdge::Crescent && seen > 0)
        hole.edgeShift = -shift / seen * hole.wall;
    makeRoom(spec);
}

void drawInside(WheelSpec& spec, Random& random)
{
    HoleSpec& hole = spec.hole;
    const double surface = holeSurfaceGray(spec), kind = random.unit();
    hole.depthTexture = random.range(0, 0.12);
    if (kind < 0.45)
        return;
    hole.depthGradient = random.range(0, 0.35);
    hole.wallGray = random.range(0.2, 1) * surface;
    hole.wallShading = random.range(0.1, 0.9);
    if (kind < 0.65) {
        hole.inside = HoleInside::Gray;
        hole.depthGray = random.range(0.3, 0.75) * surface;
    } else if (kind < 0.8) {
        hole.inside = HoleInside::Bright;
        hole.depthGray = random.range(1.25, 1.9) * surface;
    } else {
        hole.inside = HoleInside::Lit;
        hole.wallGray = random.range(0.5, 1.3) * surface;
        hole.wallShading = random.range(0, 0.3);
        hole.wall *= random.range(1, 1.6);
    }
}

} // namespace wheel
