#include "Paint.h"
#include "Pit.h"
#include "Random.h"
#include "WheelRenderer.h"

namespace wheel {

namespace {

/// A disc lying on the surface, shaded from one side to the other like a low dome.
void paintDome(cv::Mat& image, cv::Point2d center, double radius, double gray, double relief, const LightSpec& light)
{
    const cv::Point2d toLight = direction(light.azimuth);
    paintAround(image, center, radius, [&](float& pixel, double dx, double dy) {
        const double r = std::hypot(dx, dy);
        const double lit = r > 1e-6 ? (dx * toLight.x + dy * toLight.y) / r * std::min(1.0, r / radius) : 0;
        pixel = mix(pixel, static_cast<float>(gray * (1 + relief * lit)), coverage(radius - r));
    });
}

void paintValve(cv::Mat& image, const WheelSpec& spec, cv::Point2d center)
{
    const HoleSpec& hole = spec.hole;
    const bool rubber = hole.valve == Valve::Rubber;
    const double r = hole.radius * hole.axisRatio;
    const cv::Point2d lean = 0.35 * hole.wall; // the stem stands up from the far end
    if (rubber)
        paintDome(image, center, 0.80 * r, 34, 0.45, spec.light);
    paintDome(image, center - lean, (rubber ? 0.46 : 0.62) * r, 150, 0.40, spec.light);
    paintDome(image, center - lean, (rubber ? 0.30 : 0.42) * r, 60, -0.5, spec.light);
    paintDome(image, center - lean, 0.13 * r, 185, 0.3, spec.light);
}

/// Bolt holes lie between the spokes' directions, half a division from the first spoke.
void paintHub(cv::Mat& image, const WheelSpec& spec)
{
    const FaceSpec& face = spec.face;
    Pit bore = plainPit(spec.hub, face.bore * spec.rimRadius, spec);
    bore.chamfer = 0.015 * spec.rimRadius;
    bore.deep = spec.scene.floor * 0.8;
    paintPit(image, bore, spec.light);
    for (int i = 0; i < face.bolts; ++i) {
        const double angle = spec.turn + (i + 0.5) * 360 / face.bolts;
        Pit bolt = plainPit(spec.hub + face.boltRing * spec.rimRadius * direction(angle),
                            face.boltRadius * spec.rimRadius, spec);
        bolt.chamfer = face.boltSeat * spec.rimRadius;
        bolt.deep = 10;
        paintPit(image, bolt, spec.light);
    }
}

/// Off the valve hole's ring and smaller than it, so that no drain can be taken for a second valve hole.
void paintDrains(cv::Mat& image, const WheelSpec& spec)
{
    Random random(spec.seed, 21);
    const FaceSpec& face = spec.face;
    const double first = random.range(0, 360);
    const double ring = 0.5 * (face.windowOuter + face.ledgeInner) - 0.006;
    for (int i = 0; i < spec.scene.drains; ++i) {
        const double angle = first + i * 360.0 / spec.scene.drains;
        Pit drain =
            plainPit(spec.hub + ring * spec.rimRadius * direction(angle), 0.4 * face.hole * spec.rimRadius, spec);
        drain.chamfer = 1;
        paintPit(image, drain, spec.light);
    }
}

void paintValveHole(cv::Mat& image, const WheelSpec& spec, double angle)
{
    const HoleSpec& hole = spec.hole;
    const cv::Point2d out = direction(angle + hole.axisTurn);
    Pit pit;
    pit.center = spec.hub + hole.ringRadius * direction(angle);
    pit.major = hole.radius;
    pit.minor = hole.radius * hole.axisRatio;
    pit.minorDirection = std::atan2(out.y, out.x);
    if (hole.step > 0)
        paintStep(image, pit, hole, spec.light);
    pit.wall = hole.wall;
    pit.chamfer = hole.chamfer;
    pit.shine = hole.chamferShine;
    pit.chamferGray = hole.chamferGray;
    pit.edgeShift = hole.edgeShift;
    pit.deep = hole.depthGray;
    pit.deepGradient = hole.depthGradient;
    pit.deepTexture = hole.depthTexture;
    pit.wallGray = hole.wallGray < 0 ? 60 + 90 * spec.face.albedo : hole.wallGray;
    pit.wallShading = hole.wallShading;
    pit.seed = spec.seed;
    paintPit(image, pit, spec.light);
    if (hole.valve != Valve::None)
        paintValve(image, spec, pit.center);
}

} // namespace

cv::Point2d holeCenter(const WheelSpec& spec)
{
    return spec.hub + spec.hole.ringRadius * direction(spec.hole.angle);
}

void paintHoles(cv::Mat& image, const WheelSpec& spec)
{
    paintHub(image, spec);
    paintDrains(image, spec);
    paintMarks(image, spec);
    if (spec.hole.present)
        paintValveHole(image, spec, spec.hole.angle);
    if (spec.hole.present && spec.hole.twin != 0)
        paintValveHole(image, spec, spec.hole.angle + spec.hole.twin);
}

} // namespace wheel
