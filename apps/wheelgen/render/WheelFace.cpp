#include "Paint.h"
#include "WheelRenderer.h"
#include "WheelShape.h"

namespace wheel {

namespace {

float coverage(float distance)
{
    return std::clamp(0.5f + distance, 0.0f, 1.0f);
}

constexpr double lampHeight = 0.8; ///< of the main light above the wheel's plane, against its distance aside

float sixteenth(float x)
{
    x *= x, x *= x, x *= x;
    return x * x;
}

struct Vector
{
    float x, y, z;

    Vector(double vx, double vy, double vz)
    {
        const double length = std::sqrt(vx * vx + vy * vy + vz * vz);
        x = static_cast<float>(vx / length);
        y = static_cast<float>(vy / length);
        z = static_cast<float>(vz / length);
    }
};

Vector toLamp(const LightSpec& light)
{
    const cv::Point2d aside = direction(light.azimuth);
    return {aside.x, aside.y, lampHeight};
}

/// Half way between the direction to the lamp and that to the camera: a surface facing there mirrors the lamp.
Vector toMirror(const Vector& lamp)
{
    return {static_cast<double>(lamp.x), static_cast<double>(lamp.y), static_cast<double>(lamp.z) + 1};
}

class FacePainter
{
public:
    explicit FacePainter(const WheelSpec& spec);
    cv::Mat paint() const;

private:
    void paintRow(int y, float* row, int width) const;
    float background(int x, int y, float radius) const;
    float wheelAt(int x, int y, float dx, float dy, float radius) const;
    float metal(int x, int y, float slopeX, float slopeY, float albedo) const;

    /// What is seen through a window: at its outer side the far part of the wall, else the floor below the wheel.
    float window(int x, int y, float dx, float dy, float radius, const EdgeDistance& edge) const;

    const WheelSpec& m_spec;
    Profile m_profile;
    Outline m_front;
    Outline m_back;
    Texture m_texture;
    Vector m_lamp;
    Vector m_mirror;
    float m_rim = 0, m_edge = 0, m_windowFrom = 0, m_windowTo = 0;
};

FacePainter::FacePainter(const WheelSpec& spec)
    : m_spec(spec)
    , m_profile(spec)
    , m_front(spec, 1.0)
    , m_back(spec, 1.0 - spec.scene.perspective)
    , m_texture(spec.seed)
    , m_lamp(toLamp(spec.light))
    , m_mirror(toMirror(m_lamp))
{
    const double r = spec.rimRadius;
    m_rim = static_cast<float>(r);
    m_edge = static_cast<float>(std::max(1.0, spec.face.edge * r));
    m_windowFrom = static_cast<float>(spec.face.windowInner * r) - m_edge;
    m_windowTo = static_cast<float>(spec.face.windowOuter * r) + m_edge;
}

cv::Mat FacePainter::paint() const
{
    cv::Mat image(m_spec.size, CV_32F);
    for (int y = 0; y < image.rows; ++y)
        paintRow(y, image.ptr<float>(y), image.cols);
    return image;
}

void FacePainter::paintRow(int y, float* row, int width) const
{
    const float dy = static_cast<float>(y - m_spec.hub.y);
    for (int x = 0; x < width; ++x) {
        const float dx = static_cast<float>(x - m_spec.hub.x);
        const float radius = std::sqrt(dx * dx + dy * dy);
        const float rim = coverage(m_rim - radius);
        float gray = rim < 1 ? background(x, y, radius) : 0;
        if (rim > 0)
            gray += rim * (wheelAt(x, y, dx, dy, std::max(radius, 1e-3f)) - gray);
        row[x] = gray;
    }
}

float FacePainter::background(int x, int y, float radius) const
{
    const SceneSpec& scene = m_spec.scene;
    auto gray = static_cast<float>(scene.background);
    if (scene.rollers > 0) {
        const float period = static_cast<float>(m_spec.size.height) / static_cast<float>(scene.rollers);
        const float phase = std::fabs(std::fmod(static_cast<float>(y), period) / period - 0.5f);
        gray *= 0.55f + 0.9f * std::max(0.0f, 0.5f - phase * phase * 6);
    }
    gray += static_cast<float>(scene.backgroundTexture) * m_texture.at(x / 2, y / 2);
    const float beside = (radius - m_rim) / (0.12f * m_rim);
    if (beside < 1)
        gray *= 1 - static_cast<float>(scene.shadow) * (1 - beside) * (1 - beside);
    return std::max(gray, 0.0f);
}

float FacePainter::wheelAt(int x, int y, float dx, float dy, float radius) const
{
    const Profile::Sample sample = m_profile.at(radius);
    float sx = sample.slope * dx / radius, sy = sample.slope * dy / radius;
    if (radius < m_windowFrom || radius > m_windowTo || !m_front.hasWindows())
        return metal(x, y, sx, sy, sample.albedo);

    const EdgeDistance edge = m_front.at(dx, dy, radius);
    const float open = coverage(edge.distance);
    float gray = 0;
    if (open < 1) {
        // The metal falls off towards the window over the rounding of its edge.
        const float t = std::clamp(1 + edge.distance / m_edge, 0.0f, 1.0f);
        const float fall = 1.1f * t * t;
        gray = metal(x, y, sx - fall * edge.dx, sy - fall * edge.dy, sample.albedo);
    }
    return open > 0 ? gray + open * (window(x, y, dx, dy, radius, edge) - gray) : gray;
}

float FacePainter::metal(int x, int y, float slopeX, float slopeY, float albedo) const
{
    const LightSpec& light = m_spec.light;
    const float invert = 1 / std::sqrt(1 + slopeX * slopeX + slopeY * slopeY);
    const float nx = -slopeX * invert, ny = -slopeY * invert;
    const float diffuse = std::max(0.0f, nx * m_lamp.x + ny * m_lamp.y + invert * m_lamp.z);
    const float shine = sixteenth(std::max(0.0f, nx * m_mirror.x + ny * m_mirror.y + invert * m_mirror.z));
    const float grain = 1 + static_cast<float>(m_spec.scene.grain) * m_texture.at(x, y);
    const float lit =
        static_cast<float>(light.ambient) * (0.6f + 0.4f * invert) + static_cast<float>(light.diffuse) * diffuse;
    return 255 * (albedo * grain * lit + static_cast<float>(light.specular) * shine);
}

float FacePainter::window(int x, int y, float dx, float dy, float radius, const EdgeDistance& edge) const
{
    const float deep = std::clamp(edge.distance / (0.05f * m_rim), 0.0f, 1.0f);
    const float floor =
        static_cast<float>(m_spec.scene.floor) * (0.35f + 0.65f * deep) * (1 + 0.08f * m_texture.at(x / 2, y / 2));

    const float through = coverage(m_back.at(dx, dy, radius).distance);
    if (through >= 1)
        return floor;
    const float facing = 0.5f + 0.5f * (edge.dx * m_lamp.x + edge.dy * m_lamp.y);
    const float wall = 255 * m_profile.at(radius).albedo * (0.12f + 0.42f * facing * facing);
    return wall + through * (floor - wall);
}

} // namespace

cv::Mat renderFace(const WheelSpec& spec)
{
    return FacePainter(spec).paint();
}

double holeSurfaceGray(const WheelSpec& spec)
{
    const Vector lamp = toLamp(spec.light), mirror = toMirror(lamp);
    const cv::Point2d slope = spec.face.ledgeSlope * direction(spec.hole.angle);
    const Vector normal(-slope.x, -slope.y, 1);

    const auto facing = [&](const Vector& to) {
        return std::max(0.0f, normal.x * to.x + normal.y * to.y + normal.z * to.z);
    };
    const double lit = spec.light.ambient * (0.6 + 0.4 * static_cast<double>(normal.z)) +
                       spec.light.diffuse * static_cast<double>(facing(lamp));
    return 255 * (0.84 * spec.face.albedo * lit + spec.light.specular * static_cast<double>(sixteenth(facing(mirror))));
}

double ledgeGray(const WheelSpec& spec)
{
    const Vector lamp = toLamp(spec.light);
    const double lit = spec.light.ambient + spec.light.diffuse * static_cast<double>(lamp.z);
    const double shine = static_cast<double>(sixteenth(toMirror(lamp).z));
    return 255 * (0.84 * spec.face.albedo * lit + spec.light.specular * shine);
}

} // namespace wheel
