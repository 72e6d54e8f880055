#include "SpecDraw.h"

#include "Random.h"
#include "VariedDraw.h"
#include "WheelRenderer.h"

#include <algorithm>
#include <cmath>

namespace wheel {

namespace {

/// Draws the parts of one wheel in a fixed order, so that each keeps its random numbers when a later part changes.
class Draw
{
public:
    Draw(const Design& design, Difficulty difficulty, cv::Size size, std::uint64_t seed, bool withHole);
    WheelSpec wheel();

private:
    double range(double low, double high) { return m_random.range(low, high); }
    /// As range(), reaching further on a varied wheel.
    double wide(double low, double high, double highVaried) { return range(low, m_varied ? highVaried : high); }

    void place();
    void face();
    void hole();
    void light();
    void dome();
    void scene();
    void blemishes();
    void ofAllMakes();
    void optics();

    static constexpr double margin = 4; ///< pixels between rim and image border

    Random m_random;
    bool m_varied;
    bool m_easy;
    WheelSpec m_spec;
};

Draw::Draw(const Design& design, Difficulty difficulty, cv::Size size, std::uint64_t seed, bool withHole)
    : m_random(seed, 1)
    , m_varied(difficulty == Difficulty::Varied)
    , m_easy(difficulty == Difficulty::Easy)
{
    m_spec.size = size;
    m_spec.design = design.key;
    m_spec.face = design.face;
    m_spec.seed = seed;
    m_spec.hole.present = withHole;
}

WheelSpec Draw::wheel()
{
    place();
    face();
    hole();
    light();
    scene();
    blemishes();
    if (m_varied)
        ofAllMakes();
    optics();
    return m_spec;
}

void Draw::place()
{
    const double height = m_spec.size.height, half = 0.5 * std::min(m_spec.size.width, m_spec.size.height);
    m_spec.scale = m_varied ? range(0.90, 1.10) : range(0.98, 1.02);
    const double radius = m_varied ? std::clamp(range(0.27, 0.46) * height * m_spec.scale, 0.25 * height, 0.49 * height)
                                   : nominalRimRadius(m_spec.size) * m_spec.scale;
    m_spec.rimRadius = std::min(radius, half - margin);
    const double limit = (m_varied ? 0.08 : 0.015) * height;
    const auto off = [&](double length) {
        const double room = std::clamp(length / 2 - m_spec.rimRadius - margin, 0.0, limit);
        return (length - 1) / 2 + range(-room, room);
    };
    m_spec.hub.x = off(m_spec.size.width);
    m_spec.hub.y = off(height);
    m_spec.turn = range(0, 360);
}

void Draw::face()
{
    if (!m_varied)
        return;
    FaceSpec& face = m_spec.face;
    for (double* value : {&face.spokeHub, &face.spokeRim, &face.pairGap, &face.pairGapRim, &face.fillet, &face.edge,
                          &face.boltRadius, &face.boltSeat})
        *value *= range(0.8, 1.2);
    if (face.pattern == Pattern::Spokes)
        face.twist = m_random.chance(0.3) ? range(-35, 35) : 0;
    face.dish += range(-0.06, 0.06);
    face.hubHeight += range(-0.03, 0.03);
    face.ledgeSlope = m_random.chance(0.2) ? m_random.sign() * range(0.25, 0.6) : range(-0.12, 0.28);
    face.machined = range(0, 1);
    face.albedo = range(0.4, 0.85);
    face.ring += range(-0.012, 0.012);
    if (face.bolts < 7)
        face.bolts = m_random.integer(4, 6);
}

void Draw::hole()
{
    HoleSpec& hole = m_spec.hole;
    hole.angle = range(0, 360);
    hole.ringRadius = m_spec.face.ring * m_spec.rimRadius;
    hole.radius = (m_varied ? drawMouth(m_random) : m_spec.face.hole) * m_spec.rimRadius;
    hole.axisRatio = m_easy ? 1 : range(m_varied ? 0.75 : 0.9, 1);
    hole.axisTurn = m_varied ? range(-15, 15) : 0;
    hole.chamfer = wide(0, 0.2, 0.35) * hole.radius;
    hole.chamferShine = wide(0.1, 0.5, 0.9);
    const double wall = range(0, m_easy ? 0.05 : m_varied ? 0.5 : 0.25) * hole.radius;
    const double toward = (hole.angle + 180 + range(-35, 35)) * CV_PI / 180;
    hole.wall = {wall * std::cos(toward), -wall * std::sin(toward)};
    hole.depthGray = range(6, 28);
    if (m_varied && m_random.chance(0.2))
        hole.valve = m_random.chance(0.7) ? Valve::Rubber : Valve::Metal;
}

void Draw::light()
{
    LightSpec& light = m_spec.light;
    light.azimuth = range(0, 360);
    light.ambient = range(0.30, 0.50);
    light.diffuse = range(0.40, 0.75);
    light.specular = wide(0.05, 0.30, 0.60);
    if (m_varied && m_random.chance(0.2))
        dome();
    light.gradient = wide(0, 0.15, 0.45);
    light.gradientAzimuth = range(0, 360);
    light.vignette = wide(0, 0.1, 0.3);
    // As a fitter sets the exposure: by the part that matters.
    light.exposure = (m_varied ? range(85, 190) : range(115, 165)) / ledgeGray(m_spec);
}

void Draw::dome()
{
    m_spec.light.ambient = range(0.80, 0.95);
    m_spec.light.diffuse = range(0.03, 0.15);
    m_spec.light.specular = range(0, 0.08);
}

void Draw::scene()
{
    SceneSpec& scene = m_spec.scene;
    const double exposure = m_spec.light.exposure;
    const bool lightTable = m_varied && m_random.chance(0.10);
    scene.background = (lightTable ? range(150, 235) : wide(22, 50, 85)) / exposure;
    scene.floor = (lightTable ? range(80, 220) : wide(10, 30, 50)) / exposure;
    scene.backgroundTexture = range(1, 6);
    scene.rollers = !lightTable && m_random.chance(0.4) ? m_random.integer(6, 14) : 0;
    scene.shadow = lightTable ? 0 : range(0, 0.7);
    scene.perspective = range(0.015, 0.05);
    scene.grain = wide(0.01, 0.03, 0.06);
}

void Draw::blemishes()
{
    SceneSpec& scene = m_spec.scene;
    if (m_easy)
        return;
    scene.letterings = m_random.integer(0, m_varied ? 3 : 1);
    scene.dirt = m_random.integer(0, m_varied ? 25 : 5);
    scene.scratches = m_random.integer(0, m_varied ? 15 : 4);
    scene.drains = m_varied && m_random.chance(0.3) ? m_random.integer(2, 5) : 0;
    m_spec.light.glares = m_varied ? m_random.integer(0, 4) : m_random.integer(0, 1);
}

void Draw::ofAllMakes()
{
    drawEdge(m_spec, m_random);
    drawInside(m_spec, m_random);
    drawMarks(m_spec, m_random);
}

void Draw::optics()
{
    OpticsSpec& optics = m_spec.optics;
    optics.blur = wide(0.5, 0.9, 2.2);
    if (m_varied)
        optics.blur = std::min(optics.blur, std::max(0.5, 0.2 * m_spec.hole.radius));
    optics.motion = m_varied && m_random.chance(0.2) ? range(0.05, 0.4) : 0;
    optics.noise = m_easy ? 1 : m_varied ? 0.5 + 14.5 * std::pow(m_random.unit(), 1.5) : range(1.5, 4);
    optics.contrast = m_varied && m_random.chance(0.2) ? range(0.4, 0.8) : 1;
    optics.pedestal = (1 - optics.contrast) * range(0, 150);
    // No camera sees more: below this the hole drowns in the noise even for a person.
    const double surface = m_varied ? holeSurfaceGray(m_spec) : ledgeGray(m_spec);
    const double step = optics.contrast * m_spec.light.exposure * std::fabs(surface - m_spec.hole.depthGray);
    optics.noise = std::min(optics.noise, 0.7 * step * (1 - m_spec.light.gradient) / 2.5);
}

} // namespace

bool difficultyFromName(const std::string& name, Difficulty* difficulty)
{
    if (name != "easy" && name != "demo" && name != "varied")
        return false;
    *difficulty = name == "easy" ? Difficulty::Easy : name == "demo" ? Difficulty::Demo : Difficulty::Varied;
    return true;
}

double nominalRimRadius(cv::Size size)
{
    return 0.40 * size.height;
}

Nominal nominalOf(const WheelSpec& spec)
{
    return {spec.rimRadius / spec.scale, spec.hole.ringRadius / spec.scale, spec.hole.radius / spec.scale};
}

WheelSpec drawWheel(const Design& design, Difficulty difficulty, cv::Size size, std::uint64_t seed, bool withHole)
{
    return Draw(design, difficulty, size, seed, withHole).wheel();
}

} // namespace wheel
