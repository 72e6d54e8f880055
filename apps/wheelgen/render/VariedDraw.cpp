#include "VariedDraw.h"

#include "WheelRenderer.h"

#include <algorithm>
#include <cmath>

namespace wheel {

namespace {

constexpr double leastMouth = 0.013, greatestMouth = 0.055; // of the rim's radius
constexpr double greatestReach = 0.080;                     // of an edge, of the rim's radius
constexpr double ledgeMargin = 0.008;                       // between edge and ledge, of the rim's radius

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
    const double need = spec.hole.reach() / spec.rimRadius + ledgeMargin;
    face.ledgeInner = std::min(face.ledgeInner, face.lipInner - 2 * need);
    face.windowOuter = std::min(face.windowOuter, face.ledgeInner - 0.03);
    face.ring = std::clamp(face.ring, face.ledgeInner + need, face.lipInner - need);
    spec.hole.ringRadius = face.ring * spec.rimRadius;
}

constexpr double noHole = 0.011; // of the rim's radius; what is smaller is no valve hole on any wheel

/// Sets marks where nothing lies yet.
class MarkDraw
{
public:
    MarkDraw(WheelSpec& spec, Random& random);

    /// Holes in even distances, on the valve hole's ring or a near one. One place of the round may be the valve hole's.
    void vents();
    void some(MarkKind kind, double probability, int most, double least, double greatest);

private:
    double range(double low, double high) { return m_random.range(low, high); }

    double grayOf(MarkKind kind);

    /// Whether the mark lies on the ledge, or inside of the windows' ring on a disc, and touches nothing.
    bool set(const MarkSpec& mark);
    static double gap(const MarkSpec& mark, double angle, double ring);

    WheelSpec& m_spec;
    Random& m_random;
    double m_ledge;
};

MarkDraw::MarkDraw(WheelSpec& spec, Random& random)
    : m_spec(spec)
    , m_random(random)
    , m_ledge(ledgeGray(spec))
{
}

void MarkDraw::vents()
{
    const HoleSpec& hole = m_spec.hole;
    const FaceSpec& face = m_spec.face;
    double radius = hole.radius * (m_random.chance(0.75) ? range(0.3, 0.7) : range(1.4, 1.8));
    double ring = hole.ringRadius;
    if (face.pattern == Pattern::Solid && m_random.chance(0.6)) {
        ring = range(0.5, 0.72) * m_spec.rimRadius;
        radius = hole.radius * range(0.5, 2);
    } else if (m_random.chance(0.5)) {
        ring = range(face.ledgeInner, face.lipInner) * m_spec.rimRadius;
    }
    const int count = m_random.integer(3, 14);
    const bool sharesRound = m_random.chance(0.5);
    const double pitch = 360.0 / (count + (sharesRound ? 1 : 0));
    const double gray = m_random.chance(0.6) ? hole.depthGray : range(6, 28);
    double angle = hole.angle + (sharesRound ? pitch : range(0.3, 0.7) * pitch);
    for (int i = 0; i < count; ++i, angle += pitch)
        set({MarkKind::Vent, angle, ring, radius, gray, m_random.next()});
}

void MarkDraw::some(MarkKind kind, double probability, int most, double least, double greatest)
{
    if (!m_random.chance(probability))
        return;
    for (int count = m_random.integer(1, most); count > 0; --count) {
        MarkSpec mark{kind, 0, 0, range(least, greatest) * m_spec.hole.radius, grayOf(kind), m_random.next()};
        // A single drain or dot on a wheel without a hole would be one, but for its size.
        if (!m_spec.hole.present && (kind == MarkKind::Drain || kind == MarkKind::PaintDot))
            mark.radius = std::min(mark.radius, noHole * m_spec.rimRadius);
        for (int attempt = 0; attempt < 8; ++attempt) {
            mark.angle = range(0, 360);
            const double jitter = m_random.chance(0.6) ? 0.1 : 1.5;
            mark.ringRadius = m_spec.hole.ringRadius + range(-jitter, jitter) * m_spec.hole.radius;
            if (set(mark))
                break;
        }
    }
}

double MarkDraw::grayOf(MarkKind kind)
{
    switch (kind) {
    case MarkKind::Drain:
        return m_random.chance(0.5) ? m_spec.hole.depthGray : range(6, 0.4 * m_ledge);
    case MarkKind::Blot:
        return range(0.05, 0.5);
    case MarkKind::Sticker:
        return m_random.chance(0.3) ? range(0.25, 0.5) : range(1.2, 2);
    case MarkKind::PaintDot:
        return m_random.chance(0.5) ? range(0.15, 0.6) : range(1.2, 2);
    default:
        return range(0.8, 1.2);
    }
}

bool MarkDraw::set(const MarkSpec& mark)
{
    const FaceSpec& face = m_spec.face;
    const double reach = 1.35 * mark.radius, rim = m_spec.rimRadius;
    const bool onLedge =
        mark.ringRadius - mark.radius > face.ledgeInner * rim && mark.ringRadius + mark.radius < face.lipInner * rim;
    const bool onDisc = face.pattern == Pattern::Solid && mark.ringRadius + reach < face.windowOuter * rim;
    const HoleSpec& hole = m_spec.hole;
    if ((!onLedge && !onDisc) || gap(mark, hole.angle, hole.ringRadius) < 1.1 * hole.reach() + reach + 4)
        return false;
    for (const MarkSpec& other : m_spec.scene.marks)
        if (gap(mark, other.angle, other.ringRadius) < reach + 1.35 * other.radius)
            return false;
    m_spec.scene.marks.push_back(mark);
    return true;
}

double MarkDraw::gap(const MarkSpec& mark, double angle, double ring)
{
    const double turn = (mark.angle - angle) * CV_PI / 180;
    return std::hypot(mark.ringRadius - ring * std::cos(turn), ring * std::sin(turn));
}

} // namespace

double drawMouth(Random& random)
{
    const double rim = random.range(330, 560), kind = random.unit();
    const double mouth = kind < 0.35  ? random.range(10.9, 11.7)
                         : kind < 0.7 ? random.range(15.3, 16.1)
                                      : random.range(7, 20);
    return std::clamp(mouth / rim, leastMouth, greatestMouth);
}

void drawEdge(WheelSpec& spec, Random& random)
{
    HoleSpec& hole = spec.hole;
    const double kind = random.unit();
    if (kind > 0.65)
        drawCounterbore(spec, random);
    else if (kind > 0.3 || underDome(spec))
        drawRing(spec, random);

    const double room = greatestReach * spec.rimRadius - hole.radius;
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

void drawMarks(WheelSpec& spec, Random& random)
{
    MarkDraw draw(spec, random);
    if (random.chance(0.25))
        draw.vents();
    draw.some(MarkKind::Drain, 0.25, 3, 0.2, 0.45);
    draw.some(MarkKind::Dimple, 0.12, 2, 0.5, 1.3);
    draw.some(MarkKind::EjectorPin, 0.15, 3, 0.5, 1.5);
    draw.some(MarkKind::PaintDot, 0.15, 2, 0.3, 0.75);
    draw.some(MarkKind::Dial, 0.15, 2, 0.9, 2);
    draw.some(MarkKind::Sticker, 0.12, 1, 1.3, 2.2);
    draw.some(MarkKind::Blot, 0.25, 2, 0.7, 1.3);
    draw.some(MarkKind::Screw, 0.12, 2, 0.5, 1.3);
}

} // namespace wheel
