#include "Profile.h"

#include "Random.h"

#include <algorithm>

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

} // namespace

/// Slopes are smoothed twice, so that the shading has no kink where two parts of the section meet.
Profile::Profile(const WheelSpec& spec)
{
    const auto nodes = crossSection(spec.face);
    const auto count = static_cast<std::size_t>(spec.rimRadius * kPerPixel) + 8;
    std::vector<float> slope(count), albedo(count), marks(count);
    Random random(spec.seed, 11);
    std::size_t segment = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double r = static_cast<double>(i) / kPerPixel / spec.rimRadius;
        while (segment + 2 < nodes.size() && r > nodes[segment + 1].radius)
            ++segment;
        const Node &a = nodes[segment], &b = nodes[segment + 1];
        const double t = std::clamp((r - a.radius) / (b.radius - a.radius), 0.0, 1.0);
        slope[i] = static_cast<float>((b.height - a.height) / (b.radius - a.radius));
        albedo[i] = static_cast<float>(a.albedo + t * (b.albedo - a.albedo));
        marks[i] = static_cast<float>(random.range(-1, 1));
    }
    const int half = std::max(2, static_cast<int>(0.006 * spec.rimRadius * kPerPixel));
    slope = smoothed(smoothed(slope, half), half);
    albedo = smoothed(albedo, half);
    marks = smoothed(marks, 4);
    const auto depth = static_cast<float>(0.16 * spec.face.machined);
    for (std::size_t i = 0; i < count; ++i)
        m_samples.push_back({slope[i] + depth * marks[i], albedo[i]});
}

} // namespace wheel
