#include "HoleJudge.h"

#include <algorithm>
#include <numeric>

namespace finder {

namespace {

constexpr int rays = Fan::rays;
constexpr int sectors = 16;

/// 0 below `low`, 1 above `high`, straight between.
double ramp(double value, double low, double high)
{
    return std::clamp((value - low) / (high - low), 0.0, 1.0);
}

using Sectors = std::array<double, sectors>;

/// Gray values outside and inside of the outline, sector by sector. A valve may stand in the hole, or its lit wall
/// show: some band between middle and mouth is dark even then.
struct SectorLevels
{
    static constexpr std::array<double, 4> bandStarts{0.2, 0.35, 0.5, 0.68};
    static constexpr double bandWidth = 0.2;

    Sectors outside{};
    std::array<Sectors, bandStarts.size()> bands{};
};

double meanOf(const Sectors& values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / sectors;
}

SectorLevels levelsAround(const Fan& fan, const Outline& outline)
{
    SectorLevels levels;
    constexpr double share = static_cast<double>(sectors) / rays;
    for (int i = 0; i < rays; ++i) {
        const Ray& ray = fan.all()[i];
        const double edge = outline.radiusAt(ray.angle);
        const int sector = i * sectors / rays;
        levels.outside[sector] += share * meanOf(ray, 1.25 * edge + 0.5, 1.5 * edge + 1);
        for (size_t k = 0; k < levels.bands.size(); ++k) {
            const double from = SectorLevels::bandStarts[k];
            levels.bands[k][sector] += share * meanOf(ray, from * edge, (from + SectorLevels::bandWidth) * edge);
        }
    }
    return levels;
}

/// Brightness outside against the darkest of the bands, less what noise alone would make of that choice: the smaller
/// the hole, the fewer pixels a band has.
Sectors contrasts(const SectorLevels& levels, double radius, double noise)
{
    const double byChance = noise * std::min(1.0, 5 / radius);
    Sectors values{};
    for (size_t i = 0; i < values.size(); ++i) {
        double darkest = 255;
        for (const Sectors& band : levels.bands)
            darkest = std::min(darkest, band[i]);
        values[i] = levels.outside[i] - darkest - byChance;
    }
    return values;
}

/// How much darker the darkest band is, in the half of the sectors where that shows most: on the others a lit wall or a
/// valve may hide the mouth's edge. Again less what noise makes of the choice.
double typicalContrast(const SectorLevels& levels, double radius, double noise)
{
    const Sectors& band =
        *std::min_element(levels.bands.begin(), levels.bands.end(),
                          [](const Sectors& one, const Sectors& two) { return meanOf(one) < meanOf(two); });
    Sectors values{};
    // The shining edge of the lip near by makes nothing darker.
    const double most = middleOf({levels.outside.begin(), levels.outside.end()});
    for (size_t i = 0; i < values.size(); ++i)
        values[i] = std::min(levels.outside[i], most) - band[i];
    std::sort(values.begin(), values.end());
    constexpr int half = sectors / 2;
    const double stronger = std::accumulate(values.begin() + half, values.end(), 0.0) / half;
    return stronger - noise * std::min(0.8, 2.8 / radius);
}

/// A dark strip has two sides, a hole has none that is open: of each two opposite sectors one shows the mouth's edge.
double evidenceOf(const Sectors& values, double typical)
{
    Sectors shares{};
    for (int i = 0; i < sectors; ++i)
        shares[i] = ramp(values[i] / std::max(1.0, typical), 0.1, 0.4);
    double weakestPair = 1;
    for (int i = 0; i < sectors / 2; ++i)
        weakestPair = std::min(weakestPair, std::max(shares[i], shares[i + sectors / 2]));
    return std::min(weakestPair, ramp(meanOf(shares), 0.5, 0.8));
}

double strengthOf(const HoleFit& hole)
{
    std::vector<double> strengths;
    for (const EdgePoint& point : hole.points)
        strengths.push_back(point.strength);
    return middleOf(strengths);
}

/// How far the edge points lie from one outline beyond what noise explains, against the hole's size.
double unevenness(const HoleFit& hole, double noise)
{
    const double byNoise = 0.5 * noise / std::max(0.5, strengthOf(hole));
    const double residual = hole.fit.residual;
    return std::sqrt(std::max(0.0, residual * residual - byNoise * byNoise)) / (hole.fit.outline.radius + 4);
}

double roundnessOf(const HoleFit& hole, double uneven)
{
    const Outline& outline = hole.fit.outline;
    const double flatness = std::hypot(outline.c2, outline.s2) / outline.radius;
    return (1 - ramp(uneven, 0.045, 0.19)) * (1 - ramp(flatness, 0.28, 0.48));
}

/// `share`: how far it is down to black, where 1 is black. A valve in the hole lets less of the dark be seen; but the
/// hole's edge stays even and as sharp as the lens allows, while dirt is uneven and fades out. `sharpness` is the
/// edge's, per pixel.
double darknessOf(double share, double sharpness, double uneven)
{
    constexpr double usual = 0.15;
    const double edge = 2 * std::min(sharpness - usual, usual);
    return ramp(share + (edge > 0 ? edge * (1 - ramp(uneven, 0.025, 0.06)) : edge), 0.3, 0.88);
}

} // namespace

HoleScore judge(const HoleFit& hole, const Fan& fan, const Range& radius, const ImageLevels& levels)
{
    const Outline& outline = hole.fit.outline;
    const SectorLevels around = levelsAround(fan, outline);
    const double outside = middleOf({around.outside.begin(), around.outside.end()});
    const double typical = typicalContrast(around, outline.radius, levels.noise);
    HoleScore score;
    score.evidence = evidenceOf(contrasts(around, outline.radius, levels.noise), typical);
    const double uneven = unevenness(hole, levels.noise);
    score.roundness = roundnessOf(hole, uneven);
    const double sharpness = strengthOf(hole) / std::max(1.0, typical);
    score.darkness = darknessOf(typical / std::max(10.0, outside - levels.black), sharpness,
                                hole.fit.residual / (outline.radius + 4)) *
                     ramp(typical / levels.noise * std::sqrt(outline.radius / 10), 0.9, 2.2);
    // A tilted hole is as large as its longer half axis.
    const double largest = outline.radius + std::hypot(outline.c2, outline.s2);
    const double off = std::max(radius.low - largest, outline.radius - radius.high);
    score.size = 1 - ramp(off / outline.radius, 0.0, 0.3);
    return score;
}

} // namespace finder
