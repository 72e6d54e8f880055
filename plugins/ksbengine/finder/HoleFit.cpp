#include "HoleFit.h"

#include "ConcentricFit.h"
#include "Rays.h"

#include <algorithm>
#include <array>

namespace finder {

namespace {

constexpr int rays = 32;
constexpr int sectors = 8;
constexpr double axisSlack = 0.3; // a tilted hole's short axis is shorter than its radius by up to this share

/// Rays around a point, each calmed by its neighbours.
class Fan
{
public:
    Fan(const cv::Mat& gray, const cv::Point2d& center, double reach, double step)
    {
        std::array<Ray, rays> plain;
        const int count = cvCeil(reach / step) + 1;
        for (int i = 0; i < rays; ++i)
            m_whole = sampleRay(gray, center, 2 * CV_PI * i / rays, 0, step, count, &plain[i]) && m_whole;
        for (int i = 0; m_whole && i < rays; ++i) {
            const Ray& before = plain[(i + rays - 1) % rays];
            const Ray& after = plain[(i + 1) % rays];
            m_rays[i] = plain[i];
            for (size_t k = 0; k < m_rays[i].values.size(); ++k)
                m_rays[i].values[k] = 0.5F * plain[i].values[k] + 0.25F * (before.values[k] + after.values[k]);
        }
    }

    /// Whether all rays lie inside of the image.
    bool whole() const { return m_whole; }
    const std::array<Ray, rays>& all() const { return m_rays; }

private:
    std::array<Ray, rays> m_rays;
    bool m_whole = true;
};

Ray part(const Ray& ray, const Range& radius, int window)
{
    const int count = static_cast<int>(ray.values.size());
    const int first = std::clamp(cvFloor(radius.low / ray.step) - window, 0, count);
    const int last = std::clamp(cvCeil(radius.high / ray.step) + window + 1, first, count);
    return {ray.angle, first * ray.step, ray.step, {ray.values.begin() + first, ray.values.begin() + last}};
}

double meanOf(const Ray& ray, double from, double to)
{
    const int count = static_cast<int>(ray.values.size());
    const int first = std::clamp(cvRound(from / ray.step), 0, count - 1);
    const int last = std::clamp(cvRound(to / ray.step), first, count - 1);
    double sum = 0;
    for (int i = first; i <= last; ++i)
        sum += ray.values[i];
    return sum / (last - first + 1);
}

double middleOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// 0 below `low`, 1 above `high`, straight between.
double ramp(double value, double low, double high)
{
    return std::clamp((value - low) / (high - low), 0.0, 1.0);
}

/// Gray values outside and inside of the outline, sector by sector.
struct SectorLevels
{
    std::vector<double> outside = std::vector<double>(sectors, 0.0);
    std::vector<double> inside = std::vector<double>(sectors, 0.0);
};

/// A valve may stand in the hole, or its lit wall show: some band between middle and mouth is dark even then.
double darkestBand(const Ray& ray, double edge)
{
    double darkest = 255;
    for (const double from : {0.2, 0.35, 0.5, 0.68})
        darkest = std::min(darkest, meanOf(ray, from * edge, (from + 0.2) * edge));
    return darkest;
}

SectorLevels levelsAround(const Fan& fan, const Outline& outline)
{
    SectorLevels levels;
    for (int i = 0; i < rays; ++i) {
        const Ray& ray = fan.all()[i];
        const double edge = outline.radiusAt(ray.angle);
        constexpr double share = static_cast<double>(sectors) / rays;
        levels.outside[i * sectors / rays] += share * meanOf(ray, 1.25 * edge + 0.5, 1.5 * edge + 1);
        levels.inside[i * sectors / rays] += share * darkestBand(ray, edge);
    }
    return levels;
}

/// The two weakest sectors decide: a dark strip has two sides, a hole has none that is open.
double evidenceOf(const SectorLevels& levels, double typical)
{
    std::array<double, sectors> shares{};
    for (int i = 0; i < sectors; ++i)
        shares[i] = ramp((levels.outside[i] - levels.inside[i]) / std::max(1.0, typical), 0.1, 0.5);
    std::sort(shares.begin(), shares.end());
    return 0.5 * (shares[0] + shares[1]);
}

double roundnessOf(const HoleFit& hole, double noise)
{
    std::vector<double> strengths;
    for (const EdgePoint& point : hole.points)
        strengths.push_back(point.strength);
    const double byNoise = 0.5 * noise / std::max(0.5, middleOf(strengths));
    const double residual = hole.fit.residual;
    const double beyond = std::sqrt(std::max(0.0, residual * residual - byNoise * byNoise));
    return 1 - ramp(beyond / hole.fit.outline.radius, 0.04, 0.2);
}

HoleScore judge(const HoleFit& hole, const Fan& fan, const Range& radius, const ImageLevels& levels)
{
    const Outline& outline = hole.fit.outline;
    const SectorLevels around = levelsAround(fan, outline);
    const double outside = middleOf(around.outside);
    const double inside = middleOf(around.inside);
    HoleScore score;
    score.evidence = evidenceOf(around, outside - inside);
    score.roundness = roundnessOf(hole, levels.noise);
    score.darkness = ramp((outside - inside) / std::max(10.0, outside - levels.black), 0.2, 0.75);
    const double off = std::max(radius.low - outline.radius, outline.radius - radius.high);
    score.size = 1 - ramp(off / outline.radius, 0.0, 0.3);
    return score;
}

/// The outermost strong circle of bright surroundings around one centre near a point.
Outline firstOutline(const Fan& fan, const cv::Point2d& near, const Range& radius)
{
    std::vector<EdgePoint> points;
    const Range wide{radius.low * (1 - axisSlack), radius.high * (1 + axisSlack)};
    for (const Ray& ray : fan.all())
        appendEdges(part(ray, wide, 2), EdgeKind::BrightOutside, {2, 0}, &points);
    const double near1 = std::max(1.0, 0.08 * radius.middle());
    const ConcentricFit fit = fitConcentric(near, points, rays, {0.6 * radius.middle(), near1, near1, 0.1});
    if (!fit.valid)
        return {near, radius.middle(), 0, 0};
    return {fit.center, fit.lead, fit.c2, fit.s2};
}

bool refine(HoleFit* hole, const Fan& fan, const Outline& outline)
{
    hole->points.clear();
    for (const Ray& ray : fan.all()) {
        const double expected = outline.radiusAt(ray.angle);
        const Range window{expected * (1 - axisSlack) - 1, expected * (1 + axisSlack) + 1};
        const EdgePoint edge = strongestEdge(part(ray, window, 2), EdgeKind::BrightOutside, {2, 0});
        if (edge.strength > 0)
            hole->points.push_back(edge);
    }
    hole->fit = fitOutline(outline.center, hole->points, {true, axisSlack / 2, 0.5});
    return hole->fit.valid;
}

} // namespace

double estimateNoise(const cv::Mat& gray)
{
    std::vector<int> differences;
    const int rows = 48;
    for (int i = 0; i < rows; ++i) {
        const uchar* row = gray.ptr((2 * i + 1) * gray.rows / (2 * rows));
        for (int x = 2; x + 2 < gray.cols; x += 7)
            differences.push_back(std::abs(row[x - 1] - 2 * row[x] + row[x + 1]));
    }
    if (differences.empty())
        return 1;
    const auto middle = differences.begin() + static_cast<std::ptrdiff_t>(differences.size() / 2);
    std::nth_element(differences.begin(), middle, differences.end());
    return std::max(0.5, 1.4826 * *middle / std::sqrt(6.0)); // the weights 1, -2, 1 add six variances
}

HoleFit measureHole(const cv::Mat& gray, const cv::Point2d& near, const Range& radius, const ImageLevels& levels)
{
    HoleFit hole;
    const double reach = 1.65 * radius.high + 3;
    const double step = std::max(radius.middle() / 14, 0.4);
    const Fan first(gray, near, reach, step);
    if (!first.whole())
        return {};
    Outline outline = firstOutline(first, near, radius);
    for (int pass = 0; pass < 2; ++pass) {
        const Fan fan(gray, outline.center, reach, step);
        if (!fan.whole() || !refine(&hole, fan, outline) ||
            cv::norm(hole.fit.outline.center - near) > 1.2 * radius.high)
            return {};
        outline = hole.fit.outline;
        if (pass == 1)
            hole.score = judge(hole, fan, radius, levels);
    }
    return hole;
}

} // namespace finder
