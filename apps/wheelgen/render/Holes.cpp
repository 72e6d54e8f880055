#include "Holes.h"

#include "Paint.h"
#include "Random.h"

namespace wheel {

namespace {

/// Distance to an ellipse's edge, positive inside: first order, exact for a circle.
class Ellipse
{
public:
    Ellipse(double major, double minor, double minorDirection)
        : m_minor(std::max(minor, 0.5))
        , m_major(std::max(major, 0.5))
        , m_cos(std::cos(minorDirection))
        , m_sin(std::sin(minorDirection))
    {
    }

    double at(double x, double y) const
    {
        const double u = (x * m_cos + y * m_sin) / m_minor, v = (y * m_cos - x * m_sin) / m_major;
        const double q = std::hypot(u, v);
        if (q < 1e-6)
            return m_minor;
        return (1 - q) * q / std::hypot(u / m_minor, v / m_major);
    }

private:
    double m_minor, m_major, m_cos, m_sin;
};

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

/// A round hole whose far end is seen shifted towards the image's centre, as the camera looks into it from there.
Pit plainPit(cv::Point2d center, double radius, const WheelSpec& spec)
{
    Pit pit;
    pit.center = center;
    pit.major = pit.minor = radius;
    const cv::Point2d middle(spec.size.width / 2.0, spec.size.height / 2.0);
    pit.wall = (middle - center) * spec.scene.perspective;
    pit.wallGray = 110 * spec.face.albedo;
    return pit;
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
    pit.wall = hole.wall;
    pit.chamfer = hole.chamfer;
    pit.shine = hole.chamferShine;
    pit.deep = hole.depthGray;
    pit.wallGray = 60 + 90 * spec.face.albedo;
    paintPit(image, pit, spec.light);
    if (hole.valve != Valve::None)
        paintValve(image, spec, pit.center);
}

} // namespace

void paintPit(cv::Mat& image, const Pit& pit, const LightSpec& light)
{
    const Ellipse edge(pit.major, pit.minor, pit.minorDirection);
    const cv::Point2d toLight = direction(light.azimuth);
    paintAround(image, pit.center, pit.major + pit.chamfer, [&](float& pixel, double dx, double dy) {
        const double inside = edge.at(dx, dy);
        const double r = std::max(std::hypot(dx, dy), 1e-6);
        const double facing = -(dx * toLight.x + dy * toLight.y) / r; // 1: faces the light
        if (pit.chamfer > 0) {
            const auto slope = static_cast<float>(pixel * (1 + pit.shine * (0.35 + 0.9 * facing)));
            pixel = mix(pixel, slope, coverage(inside + pit.chamfer));
        }
        const auto wall = static_cast<float>(pit.wallGray * (0.55 + 0.45 * facing));
        const float open = coverage(inside),
                    through = std::min(open, coverage(edge.at(dx - pit.wall.x, dy - pit.wall.y)));
        pixel = pixel * (1 - open) + wall * (open - through) + static_cast<float>(pit.deep) * through;
    });
}

cv::Point2d holeCenter(const WheelSpec& spec)
{
    return spec.hub + spec.hole.ringRadius * direction(spec.hole.angle);
}

void paintHoles(cv::Mat& image, const WheelSpec& spec)
{
    paintHub(image, spec);
    paintDrains(image, spec);
    if (spec.hole.present)
        paintValveHole(image, spec, spec.hole.angle);
    if (spec.hole.present && spec.hole.twin != 0)
        paintValveHole(image, spec, spec.hole.angle + spec.hole.twin);
}

} // namespace wheel
