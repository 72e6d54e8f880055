#include "Pit.h"

#include "Paint.h"

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

} // namespace

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

void paintStep(cv::Mat& image, const Pit& pit, const HoleSpec& hole, const LightSpec& light)
{
    const double reach = hole.reach();
    const Ellipse border(reach, reach * hole.axisRatio, pit.minorDirection);
    const cv::Point2d center = pit.center + hole.edgeShift, shadow = hole.stepDepth * direction(light.azimuth);
    paintAround(image, center, reach, [&](float& pixel, double dx, double dy) {
        const float within = coverage(border.at(dx, dy));
        const float shaded = within - std::min(within, coverage(border.at(dx + shadow.x, dy + shadow.y)));
        const float lit = within - std::min(within, coverage(border.at(dx - 0.4 * shadow.x, dy - 0.4 * shadow.y)));
        const double floor = hole.stepGray * (1 + hole.stepShadow * static_cast<double>(0.4f * lit - shaded));
        pixel = mix(pixel, static_cast<float>(floor) * pixel, within);
    });
}

void paintPit(cv::Mat& image, const Pit& pit, const LightSpec& light)
{
    const Ellipse edge(pit.major, pit.minor, pit.minorDirection);
    const Texture texture(pit.seed);
    const cv::Point2d toLight = direction(light.azimuth);
    const double reach = pit.major + pit.chamfer + cv::norm(pit.edgeShift);
    paintAround(image, pit.center, reach, [&](float& pixel, double dx, double dy) {
        const double inside = edge.at(dx, dy);
        const double r = std::max(std::hypot(dx, dy), 1e-6);
        const double facing = -(dx * toLight.x + dy * toLight.y) / r; // 1: faces the light
        if (pit.chamfer > 0) {
            const auto slope = static_cast<float>(pixel * pit.chamferGray * (1 + pit.shine * (0.35 + 0.9 * facing)));
            pixel = mix(pixel, slope, coverage(edge.at(dx - pit.edgeShift.x, dy - pit.edgeShift.y) + pit.chamfer));
        }
        const auto wall = static_cast<float>(pit.wallGray * (1 - 0.5 * pit.wallShading * (1 - facing)));
        const double patchy = pit.deepTexture * static_cast<double>(texture.at(cvRound(dx / 2), cvRound(dy / 2)));
        const double across = pit.deepGradient * (dx * toLight.x + dy * toLight.y) / pit.major;
        const auto deep = static_cast<float>(pit.deep * std::max(0.0, 1 + across + patchy));
        const float open = coverage(inside),
                    through = std::min(open, coverage(edge.at(dx - pit.wall.x, dy - pit.wall.y)));
        pixel = pixel * (1 - open) + wall * (open - through) + deep * through;
    });
}

} // namespace wheel
