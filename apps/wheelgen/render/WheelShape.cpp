#include "WheelShape.h"

#include "Random.h"

#include <algorithm>
#include <cmath>

namespace wheel {

namespace {

struct Node
{
    double radius;
    double height;
    double albedo;
};

/// From the bore to the rim's outer edge, in fractions of the rim radius.
std::vector<Node> crossSection(const FaceSpec& f)
{
    const double outer = f.hubHeight - f.dish;
    const double ledge = std::min(outer, f.hubHeight) - 0.03;
    const double ledgeEnd = ledge + f.ledgeSlope * (f.lipInner - f.ledgeInner);
    const double middle = 0.5 * (f.windowInner + f.windowOuter);
    return {{0.0, f.hubHeight, f.albedo * 0.9},
            {f.bore * 1.20, f.hubHeight, f.albedo * 0.9},
            {f.bore * 1.28, f.hubHeight + 0.012, f.albedo},
            {f.windowInner * 0.90, f.hubHeight + 0.012, f.albedo},
            {f.windowInner * 0.98, f.hubHeight, f.albedo},
            {middle, f.hubHeight - 0.35 * f.dish, f.albedo},
            {f.windowOuter, outer, f.albedo * 0.95},
            {f.ledgeInner - 0.012, outer - 0.004, f.albedo * 0.9},
            {f.ledgeInner, ledge, f.albedo * 0.8},
            {f.lipInner - 0.004, ledgeEnd, f.albedo * 0.88},
            {f.lipInner + 0.008, ledgeEnd + 0.035, f.albedo * 0.95},
            {0.965, ledgeEnd + 0.044, f.albedo * 1.1},
            {0.988, ledgeEnd + 0.040, f.albedo * 1.1},
            {1.0, ledgeEnd + 0.028, f.albedo}};
}

/// The mean over 2 * half + 1 values, fewer at the ends; by running sums, whatever the width.
std::vector<float> smoothed(const std::vector<float>& values, int half)
{
    std::vector<double> sums(values.size() + 1, 0.0);
    for (std::size_t i = 0; i < values.size(); ++i)
        sums[i + 1] = sums[i] + static_cast<double>(values[i]);
    const int n = static_cast<int>(values.size());
    std::vector<float> result(values.size());
    for (int i = 0; i < n; ++i) {
        const int from = std::max(0, i - half), to = std::min(n, i + half + 1);
        result[static_cast<std::size_t>(i)] = static_cast<float>(
            (sums[static_cast<std::size_t>(to)] - sums[static_cast<std::size_t>(from)]) / (to - from));
    }
    return result;
}

constexpr float pi = 3.14159265f;

/// atan2 to 0.003 rad: it only chooses a sector, whose borders are mirror lines.
float roughAtan2(float y, float x)
{
    const float ax = std::fabs(x), ay = std::fabs(y);
    const float t = std::min(ax, ay) / std::max(std::max(ax, ay), 1e-9f);
    float angle = t * (0.9724f - 0.1919f * t * t);
    if (ay > ax)
        angle = pi / 2 - angle;
    if (x < 0)
        angle = pi - angle;
    return y < 0 ? -angle : angle;
}

} // namespace

/// Slopes are smoothed twice, so that the shading has no kink where two parts of the section meet.
Profile::Profile(const WheelSpec& spec)
{
    const auto nodes = crossSection(spec.face);
    const auto count = static_cast<std::size_t>(spec.rimRadius * samplesPerPixel) + 8;
    std::vector<float> slope(count), albedo(count), marks(count);
    Random random(spec.seed, 11);
    std::size_t segment = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double r = static_cast<double>(i) / samplesPerPixel / spec.rimRadius;
        while (segment + 2 < nodes.size() && r > nodes[segment + 1].radius)
            ++segment;
        const Node &a = nodes[segment], &b = nodes[segment + 1];
        const double t = std::clamp((r - a.radius) / (b.radius - a.radius), 0.0, 1.0);
        slope[i] = static_cast<float>((b.height - a.height) / (b.radius - a.radius));
        albedo[i] = static_cast<float>(a.albedo + t * (b.albedo - a.albedo));
        marks[i] = static_cast<float>(random.range(-1, 1));
    }
    const int half = std::max(2, static_cast<int>(0.006 * spec.rimRadius * samplesPerPixel));
    slope = smoothed(smoothed(slope, half), half);
    albedo = smoothed(albedo, half);
    marks = smoothed(marks, 4);
    const auto depth = static_cast<float>(0.16 * spec.face.machined);
    for (std::size_t i = 0; i < count; ++i)
        m_samples.push_back({slope[i] + depth * marks[i], albedo[i]});
}

Outline::Outline(const WheelSpec& spec, double scale)
    : m_face(spec.face)
{
    const double s = spec.rimRadius * scale;
    m_inner = static_cast<float>(m_face.windowInner * s);
    m_outer = static_cast<float>(m_face.windowOuter * s);
    m_fillet = static_cast<float>(std::max(0.002, m_face.fillet) * s);
    m_hubHalf = static_cast<float>(m_face.spokeHub * s);
    m_rimHalf = static_cast<float>(m_face.spokeRim * s);
    m_gapHub = static_cast<float>(m_face.pairGap * s);
    m_gapRim = static_cast<float>(m_face.pairGapRim * s);
    m_bend = static_cast<float>(m_face.twist * CV_PI / 180) / std::max(1.0f, m_outer - m_inner);
    m_turn = static_cast<float>(-spec.turn * CV_PI / 180);
    m_period = 2 * pi / static_cast<float>(std::max(1, m_face.count));
    for (int i = 0; i <= m_face.count; ++i) {
        m_cos.push_back(std::cos(m_turn + static_cast<float>(i) * m_period));
        m_sin.push_back(std::sin(m_turn + static_cast<float>(i) * m_period));
    }
}

Outline::Folded Outline::fold(float x, float y) const
{
    float sector = (roughAtan2(y, x) - m_turn) / m_period + 0.5f;
    sector -= std::floor(sector / static_cast<float>(m_face.count)) * static_cast<float>(m_face.count);
    const auto i = static_cast<std::size_t>(std::clamp(static_cast<int>(sector), 0, m_face.count));
    const float v = y * m_cos[i] - x * m_sin[i];
    return {x * m_cos[i] + y * m_sin[i], std::fabs(v), m_cos[i], m_sin[i], v < 0 ? -1.0f : 1.0f};
}

EdgeDistance Outline::fromSector(const Folded& p, float distance, float du, float dv) const
{
    const float w = dv * p.flip;
    return {distance, du * p.cx - w * p.sx, du * p.sx + w * p.cx};
}

EdgeDistance Outline::blend(EdgeDistance a, EdgeDistance b) const
{
    const float h = std::clamp(0.5f + 0.5f * (b.distance - a.distance) / m_fillet, 0.0f, 1.0f);
    return {b.distance + (a.distance - b.distance) * h - m_fillet * h * (1 - h), b.dx + (a.dx - b.dx) * h,
            b.dy + (a.dy - b.dy) * h};
}

EdgeDistance Outline::annulus(float x, float y, float radius) const
{
    if (radius - m_inner < m_outer - radius)
        return {radius - m_inner, x / radius, y / radius};
    return {m_outer - radius, -x / radius, -y / radius};
}

EdgeDistance Outline::spokes(const Folded& p, float x, float y, float radius) const
{
    const float t = std::clamp((p.u - m_inner) / (m_outer - m_inner), 0.0f, 1.0f);
    const float half = m_hubHalf + (m_rimHalf - m_hubHalf) * t;
    const EdgeDistance ring = annulus(x, y, radius);
    if (m_face.pattern == Pattern::Spokes)
        return blend(ring, fromSector(p, p.v - half, 0, 1));
    // A pair: the mirrored coordinate shows one spoke; its two flanks border two different windows.
    const float across = p.v - (m_gapHub + (m_gapRim - m_gapHub) * t);
    return blend(ring, fromSector(p, std::fabs(across) - half, 0, across < 0 ? -1.0f : 1.0f));
}

/// A bar from one point of the sector to another, as wide at its ends as a spoke at hub and rim.
EdgeDistance Outline::bar(const Folded& p, float u0, float v0, float u1, float v1) const
{
    const float du = u1 - u0, dv = v1 - v0;
    const float t = std::clamp(((p.u - u0) * du + (p.v - v0) * dv) / (du * du + dv * dv), 0.0f, 1.0f);
    const float ou = p.u - u0 - t * du, ov = p.v - v0 - t * dv;
    const float length = std::max(std::sqrt(ou * ou + ov * ov), 1e-6f);
    return fromSector(p, length - (m_hubHalf + (m_rimHalf - m_hubHalf) * t), ou / length, ov / length);
}

EdgeDistance Outline::meshBars(const Folded& p, float x, float y, float radius) const
{
    // One zigzag in the mirrored sector, from the hub's middle line to the sector's border and back, is a lattice.
    const float middle = 0.55f * m_inner + 0.45f * m_outer;
    const float bu = middle * std::cos(m_period / 2), bv = middle * std::sin(m_period / 2);
    const EdgeDistance bars =
        blend(bar(p, m_inner * 0.95f, 0, bu, bv), bar(p, bu, bv, m_outer * 1.02f, 0.12f * m_outer * m_period));
    return blend(annulus(x, y, radius), bars);
}

/// A rectangle with rounded corners; with corners as large as its half length, a circle.
EdgeDistance Outline::slot(const Folded& p) const
{
    const float middle = 0.5f * (m_inner + m_outer), halfU = 0.5f * (m_outer - m_inner);
    const bool round = m_face.pattern == Pattern::Drilled;
    const float corner = round ? halfU : std::min(m_fillet, halfU);
    const float u = p.u - middle, side = u < 0 ? -1.0f : 1.0f;
    const float qu = std::fabs(u) - (halfU - corner), qv = p.v - ((round ? halfU : m_rimHalf) - corner);
    const float ou = std::max(qu, 0.0f), ov = std::max(qv, 0.0f);
    const float length = std::sqrt(ou * ou + ov * ov);
    const float inside = std::min(std::max(qu, qv), 0.0f);
    if (length > 1e-6f)
        return fromSector(p, corner - length, -side * ou / length, -ov / length);
    return fromSector(p, corner - inside, qu > qv ? -side : 0.0f, qu > qv ? 0.0f : -1.0f);
}

EdgeDistance Outline::straight(float x, float y, float radius) const
{
    const Folded p = fold(x, y);
    switch (m_face.pattern) {
    case Pattern::Spokes:
    case Pattern::TwinSpokes:
        return spokes(p, x, y, radius);
    case Pattern::Mesh:
        return meshBars(p, x, y, radius);
    case Pattern::Slots:
    case Pattern::Drilled:
        return slot(p);
    case Pattern::Solid:
        break;
    }
    return {-1e6f, 0, 0};
}

EdgeDistance Outline::at(float x, float y, float radius) const
{
    if (m_bend == 0)
        return straight(x, y, radius);
    // Bent spokes are straight ones in a plane that turns with the radius.
    const float a = m_bend * (radius - m_inner), c = std::cos(a), s = std::sin(a);
    const EdgeDistance e = straight(x * c - y * s, x * s + y * c, radius);
    return {e.distance, e.dx * c + e.dy * s, e.dy * c - e.dx * s};
}

} // namespace wheel
