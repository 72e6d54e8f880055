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
        const auto i = static_cast<std::size_t>(radius * kPerPixel + 0.5f);
        return m_samples[i < m_samples.size() ? i : m_samples.size() - 1];
    }

private:
    static constexpr float kPerPixel = 4;

    std::vector<Sample> m_samples;
};

} // namespace wheel
