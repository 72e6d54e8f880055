#include "HoleFit.h"

#include "ConcentricFit.h"
#include "Fan.h"
#include "HoleJudge.h"

#include <algorithm>

namespace finder {

namespace {

constexpr int rays = Fan::rays;
constexpr double axisSlack = 0.3; // a tilted hole's short axis is shorter than its radius by up to this share

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

using Directions = std::array<cv::Point2d, 24>;

const Directions& directions()
{
    static const Directions all = [] {
        Directions made;
        for (size_t i = 0; i < made.size(); ++i) {
            const double angle = 2 * CV_PI * static_cast<double>(i) / static_cast<double>(made.size());
            made[i] = {std::cos(angle), std::sin(angle)};
        }
        return made;
    }();
    return all;
}

/// How much brighter it is around a circle than just inside of it, with no direction counting more than `most`.
double contrastAcross(const cv::Mat& gray, const cv::Point2d& center, double radius, double most)
{
    double sum = 0;
    for (const cv::Point2d& direction : directions()) {
        const auto at = [&](double r) {
            const cv::Point2d p = center + r * direction;
            return static_cast<double>(grayAt(gray, static_cast<float>(p.x), static_cast<float>(p.y)));
        };
        const double outside = at(1.2 * radius + 1) + at(1.4 * radius + 1);
        const double inside = at(0.7 * radius) + at(0.88 * radius);
        sum += std::clamp((outside - inside) / 2, -most, most);
    }
    return sum / static_cast<double>(directions().size());
}

/// The circle of about the expected size that parts bright from dark best, all round: also where something stands in
/// the hole whose own edges are stronger.
Outline partingOutline(const cv::Mat& gray, const cv::Point2d& near, double expected, double most)
{
    constexpr int steps = 3;
    Outline best{near, expected, 0, 0};
    double highest = -1e9;
    for (const double share : {0.8, 0.9, 1.0}) {
        const double radius = share * expected;
        for (int y = -steps; y <= steps; ++y) {
            for (int x = -steps; x <= steps; ++x) {
                const cv::Point2d center = near + 0.5 * expected / steps * cv::Point2d(x, y);
                const double contrast = contrastAcross(gray, center, radius, most);
                if (contrast > highest) {
                    highest = contrast;
                    best = {center, radius, 0, 0};
                }
            }
        }
    }
    return best;
}

struct Sampling
{
    double reach;
    double step;
};

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

HoleFit measureFrom(const cv::Mat& gray, Outline outline, const cv::Point2d& near, const Range& radius,
                    const ImageLevels& levels, const Sampling& sampling)
{
    HoleFit hole;
    for (int pass = 0; pass < 2; ++pass) {
        const Fan fan(gray, outline.center, sampling.reach, sampling.step);
        if (!fan.whole() || !refine(&hole, fan, outline) ||
            cv::norm(hole.fit.outline.center - near) > 1.2 * radius.high)
            return {};
        outline = hole.fit.outline;
        if (pass == 1)
            hole.score = judge(hole, fan, radius, levels);
    }
    return hole;
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

HoleFit measureHole(const cv::Mat& gray, const cv::Point2d& near, double expected, const Range& radius,
                    const ImageLevels& levels)
{
    const Sampling sampling{1.65 * radius.high + 3, std::max(radius.middle() / 14, 0.4)};
    const Fan fan(gray, near, sampling.reach, sampling.step);
    if (!fan.whole() || !inside(gray, near.x - 2 * sampling.reach, near.y - 2 * sampling.reach) ||
        !inside(gray, near.x + 2 * sampling.reach, near.y + 2 * sampling.reach))
        return {};
    HoleFit first = measureFrom(gray, firstOutline(fan, near, radius), near, radius, levels, sampling);
    if (first.fit.valid && first.score.total() > 0.8)
        return first;
    const double most = 0.7 * (meanOf(fan.all()[0], 0, sampling.reach) - levels.black);
    const HoleFit second =
        measureFrom(gray, partingOutline(gray, near, expected, std::max(20.0, most)), near, radius, levels, sampling);
    return second.fit.valid && second.score.total() > first.score.total() ? second : first;
}

} // namespace finder
