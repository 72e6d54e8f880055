#pragma once

#include "WheelSpec.h"

#include <vector>

namespace wheel {

/// The wheel's cross section as tables over the radius: what a surface of revolution needs for its shading.
class Profile
{
public:
    struct Sample
    {
        float slope;  ///< change of height with radius
        float albedo; ///< reflected part of the light, 0 to 1
    };

    explicit Profile(const WheelSpec& spec);

    /// `radius` in pixels, not negative; beyond the rim the rim's values.
    Sample at(float radius) const
    {
        const auto i = static_cast<std::size_t>(radius * samplesPerPixel + 0.5f);
        return m_samples[i < m_samples.size() ? i : m_samples.size() - 1];
    }

private:
    static constexpr float samplesPerPixel = 4;

    std::vector<Sample> m_samples;
};

/// Signed distance to the nearest edge of a window, positive inside the window, with the direction in which it grows.
struct EdgeDistance
{
    float distance;
    float dx;
    float dy;
};

/// The windows between the spokes, as a distance field around the hub centre. Fillets are made by blending distances,
/// so that a corner's rounding is smooth and so is the shading that follows from it.
class Outline
{
public:
    /// `scale` stretches the windows about the hub: their far edges as seen in perspective.
    Outline(const WheelSpec& spec, double scale);

    bool hasWindows() const { return m_face.pattern != Pattern::Solid; }

    /// Distance at (x, y) pixels from the hub centre (y down), where radius = hypot(x, y) > 0.
    EdgeDistance at(float x, float y, float radius) const;

private:
    struct Folded
    {
        float u, v;   ///< along and across the middle of the sector, v >= 0
        float cx, sx; ///< the sector's direction
        float flip;   ///< -1 when v was mirrored
    };

    /// The point as seen in one sector, mirrored to its upper half: all sectors are the same.
    Folded fold(float x, float y) const;
    /// As at(), without the bend of the spokes.
    EdgeDistance straight(float x, float y, float radius) const;
    EdgeDistance spokes(const Folded& p, float x, float y, float radius) const;
    EdgeDistance meshBars(const Folded& p, float x, float y, float radius) const;
    EdgeDistance bar(const Folded& p, float u0, float v0, float u1, float v1) const;
    EdgeDistance slot(const Folded& p) const;
    /// The ring between inner and outer end of the windows.
    EdgeDistance annulus(float x, float y, float radius) const;
    /// The nearer of two edges, rounded where they meet.
    EdgeDistance blend(EdgeDistance a, EdgeDistance b) const;
    /// Turns a direction of the sector back into one of the image.
    EdgeDistance fromSector(const Folded& p, float distance, float du, float dv) const;

    FaceSpec m_face;
    float m_inner, m_outer, m_fillet, m_hubHalf, m_rimHalf, m_gapHub, m_gapRim, m_bend;
    float m_turn, m_period;
    std::vector<float> m_cos, m_sin;
};

} // namespace wheel
