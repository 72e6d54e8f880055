#include "SpecDraw.h"

#include "Random.h"

#include <algorithm>
#include <cmath>

namespace wheel {

namespace {

void drawPlace(WheelSpec& spec, Difficulty difficulty, Random& random)
{
    const double height = spec.size.height;
    const bool varied = difficulty == Difficulty::Varied;
    const double scale = varied ? random.range(0.90, 1.10) : random.range(0.98, 1.02);
    spec.rimRadius = varied ? std::clamp(random.range(0.26, 0.47) * height * scale, 0.25 * height, 0.49 * height)
                            : nominalRimRadius(spec.size) * scale;
    const double limit = (varied ? 0.08 : 0.015) * height;
    const double roomX = std::max(0.0, std::min(limit, spec.size.width / 2.0 - spec.rimRadius - 4));
    const double roomY = std::max(0.0, std::min(limit, height / 2.0 - spec.rimRadius - 4));
    spec.hub = {(spec.size.width - 1) / 2.0 + random.range(-roomX, roomX),
                (height - 1) / 2.0 + random.range(-roomY, roomY)};
    spec.turn = random.range(0, 360);
}

void drawFace(WheelSpec& spec, Difficulty difficulty, Random& random)
{
    if (difficulty != Difficulty::Varied)
        return;
    FaceSpec& face = spec.face;
    for (double* value : {&face.spokeHub, &face.spokeRim, &face.pairGap, &face.fillet, &face.edge, &face.boltRadius})
        *value *= random.range(0.8, 1.2);
    face.dish += random.range(-0.05, 0.05);
    face.ledgeSlope = random.range(0.02, 0.25);
    face.machined = random.range(0, 1);
    face.albedo = random.range(0.4, 0.85);
    face.ring += random.range(-0.012, 0.012);
    face.bolts = random.integer(4, 6);
}

void drawHole(WheelSpec& spec, Difficulty difficulty, bool withHole, Random& random)
{
    const bool varied = difficulty == Difficulty::Varied, easy = difficulty == Difficulty::Easy;
    const double zoom = spec.size.height / 2048.0;
    HoleSpec& hole = spec.hole;
    hole.present = withHole;
    hole.angle = random.range(0, 360);
    hole.ringRadius = spec.face.ring * spec.rimRadius;
    hole.radius = varied ? random.range(6, 20) * zoom : spec.face.hole * spec.rimRadius;
    hole.axisRatio = easy ? 1 : varied ? random.range(0.75, 1) : random.range(0.9, 1);
    hole.axisTurn = varied ? random.range(-15, 15) : 0;
    hole.chamfer = random.range(0, 0.25) * hole.radius;
    hole.chamferShine = random.range(0.1, varied ? 0.9 : 0.5);
    const double wall = random.range(0, easy ? 0.05 : varied ? 0.5 : 0.25) * hole.radius;
    const double toward = (hole.angle + 180 + random.range(-30, 30)) * CV_PI / 180;
    hole.wall = {wall * std::cos(toward), -wall * std::sin(toward)};
    hole.depthGray = random.range(6, 28);
    if (varied && random.chance(0.2))
        hole.valve = random.chance(0.7) ? Valve::Rubber : Valve::Metal;
}

void drawLight(WheelSpec& spec, Difficulty difficulty, Random& random)
{
    const bool varied = difficulty == Difficulty::Varied;
    LightSpec& light = spec.light;
    light.azimuth = random.range(0, 360);
    light.ambient = random.range(0.40, 0.55);
    light.diffuse = random.range(0.35, 0.60);
    light.specular = random.range(0.05, varied ? 0.35 : 0.15);
    light.gradient = random.range(0, varied ? 0.45 : 0.15);
    light.gradientAzimuth = random.range(0, 360);
    light.vignette = random.range(0, varied ? 0.3 : 0.1);
}

void drawScene(WheelSpec& spec, Difficulty difficulty, Random& random)
{
    const bool varied = difficulty == Difficulty::Varied;
    SceneSpec& scene = spec.scene;
    scene.background = random.range(25, varied ? 90 : 55);
    scene.backgroundTexture = random.range(1, 7);
    scene.rollers = random.chance(0.5) ? random.integer(6, 14) : 0;
    scene.shadow = random.range(0, 0.7);
    scene.floor = random.range(12, 45);
    scene.perspective = random.range(0.015, 0.05);
    scene.drains = varied && random.chance(0.3) ? random.integer(2, 5) : 0;
    scene.grain = random.range(0.01, varied ? 0.06 : 0.03);
}

void drawOptics(WheelSpec& spec, Difficulty difficulty, Random& random)
{
    const bool varied = difficulty == Difficulty::Varied, easy = difficulty == Difficulty::Easy;
    OpticsSpec& optics = spec.optics;
    optics.blur = varied ? random.range(0.4, 2.2) : random.range(0.5, 0.9);
    optics.motion = varied && random.chance(0.25) ? random.range(0.05, 0.4) : 0;
    optics.noise = easy ? 1 : varied ? 15 * random.unit() * random.unit() + 0.5 : random.range(1.5, 4);
    optics.contrast = varied && random.chance(0.2) ? random.range(0.45, 0.8) : 1;
    optics.pedestal = (1 - optics.contrast) * random.range(0, 120);
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

WheelSpec drawWheel(const Design& design, Difficulty difficulty, cv::Size size, std::uint64_t seed, bool withHole)
{
    Random random(seed, 1);
    WheelSpec spec;
    spec.size = size;
    spec.design = design.key;
    spec.face = design.face;
    spec.seed = seed;
    drawPlace(spec, difficulty, random);
    drawFace(spec, difficulty, random);
    drawHole(spec, difficulty, withHole, random);
    drawLight(spec, difficulty, random);
    drawScene(spec, difficulty, random);
    drawOptics(spec, difficulty, random);
    return spec;
}

} // namespace wheel
