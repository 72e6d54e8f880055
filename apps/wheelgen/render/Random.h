#pragma once

#include <array>
#include <cmath>
#include <cstdint>

namespace wheel {

/// Random numbers that are the same on every platform and with every compiler: xoshiro256** seeded by splitmix64, with
/// distributions of its own, because those of the standard library differ from one library to the next.
class Random
{
public:
    /// Streams of one seed are independent: each part of a picture draws from its own, whatever the others take.
    explicit Random(std::uint64_t seed, std::uint64_t stream = 0)
    {
        std::uint64_t state = seed ^ mix(stream + 0x632BE59BD9B4E019ULL);
        for (auto& word : m_state)
            word = mix(state += 0x9E3779B97F4A7C15ULL);
    }

    std::uint64_t next()
    {
        const std::uint64_t result = rotl(m_state[1] * 5, 7) * 9;
        const std::uint64_t t = m_state[1] << 17;
        m_state[2] ^= m_state[0];
        m_state[3] ^= m_state[1];
        m_state[1] ^= m_state[2];
        m_state[0] ^= m_state[3];
        m_state[2] ^= t;
        m_state[3] = rotl(m_state[3], 45);
        return result;
    }

    double unit() { return static_cast<double>(next() >> 11) * 0x1.0p-53; } ///< [0, 1)
    double range(double low, double high) { return low + (high - low) * unit(); }
    int integer(int low, int high) { return low + static_cast<int>(unit() * (high - low + 1)); } ///< both ends included
    bool chance(double probability) { return unit() < probability; }
    double sign() { return chance(0.5) ? 1.0 : -1.0; }

private:
    static std::uint64_t rotl(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }
    static std::uint64_t mix(std::uint64_t z)
    {
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }

    std::array<std::uint64_t, 4> m_state{};
};

} // namespace wheel
