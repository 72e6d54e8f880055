#include "HoleJudge.h"

#include "Views.h"
#include "finder/Pyramid.h"

#include <algorithm>
#include <cmath>

namespace finder {

namespace {

// As in training.
constexpr double nearReach = 2.4; // radii
constexpr double wideReach = 7;
constexpr float flat = 0.3F; // spread of roots of gray values that counts as none

constexpr int pixels = HoleView::places;
constexpr int picturesOfPlace = 3;

constexpr double worthTwo = -4;   // evidence from which a place is looked at again
constexpr size_t mostTwice = 4;   // so many at most
constexpr double mostMove = 0.6;  // radii
constexpr double mostScale = 0.6; // logarithm

enum Answer { Evidence, Along, Across, Radius, Outer, Kinds };

Judgement judged(const cv::Point2d& hub, const Judgement& place, const float* answer)
{
    const auto clamped = [answer](int i, double most) {
        return std::clamp(static_cast<double>(answer[i]), -most, most);
    };
    const cv::Point2d arm = place.center - hub;
    const cv::Point2d along = arm / std::max(1e-6, cv::norm(arm));
    const cv::Point2d across(-along.y, along.x);
    Judgement result;
    result.center =
        place.center + place.radius * (clamped(Along, mostMove) * along + clamped(Across, mostMove) * across);
    result.radius = place.radius * std::exp(clamped(Radius, mostScale));
    result.outerRadius = std::max(result.radius, place.radius * std::exp(clamped(Outer, 2 * mostScale)));
    result.evidence = static_cast<double>(answer[Evidence]);
    const float* const kinds = answer + Kinds;
    result.lookalike =
        static_cast<Lookalike>(std::max_element(kinds, kinds + static_cast<int>(Lookalike::count)) - kinds);
    return result;
}

} // namespace

void takePictures(Pyramid& image, const cv::Point2d& hub, const GrayLevels& levels, const cv::Point2d& center,
                  double radius, float* pictures)
{
    const cv::Point2d arm = center - hub;
    const double reach = std::max(1e-6, cv::norm(arm));
    const cv::Point2d along = arm / reach;
    float* const near = pictures;
    float* const wide = pictures + pixels;
    float* const absolute = pictures + 2 * pixels;
    HoleView{center, along, nearReach * radius}.sampleRoots(image, near);
    HoleView{center, along, wideReach * radius}.sampleRoots(image, wide);
    cv::Scalar mean, spread;
    cv::meanStdDev(cv::Mat(HoleView::side, HoleView::side, CV_32F, wide), mean, spread);
    const auto middle = static_cast<float>(mean[0]);
    const float scale = 1 / (static_cast<float>(spread[0]) + flat);
    const auto dark = static_cast<float>(std::sqrt(levels.black));
    const auto bright = static_cast<float>(std::sqrt(std::max(levels.bright, levels.black + 1)));
    const float range = 2 / std::max(1.0F, bright - dark);
    for (int i = 0; i < pixels; ++i) {
        absolute[i] = range * (near[i] - dark) - 1;
        near[i] = scale * (near[i] - middle);
        wide[i] = scale * (wide[i] - middle);
    }
}

std::vector<Judgement> HoleJudge::look(Pyramid& image, const cv::Point2d& hub, const GrayLevels& levels,
                                       const std::vector<Judgement>& places)
{
    if (places.empty())
        return {};
    const std::array<int, 4> shape{static_cast<int>(places.size()), picturesOfPlace, HoleView::side, HoleView::side};
    m_input.create(static_cast<int>(shape.size()), shape.data(), CV_32F);
    for (size_t i = 0; i < places.size(); ++i)
        takePictures(image, hub, levels, places[i].center, places[i].radius, m_input.ptr<float>(static_cast<int>(i)));
    const cv::Mat answers = m_network.run(m_input);
    std::vector<Judgement> judgements;
    judgements.reserve(places.size());
    for (size_t i = 0; i < places.size(); ++i)
        judgements.push_back(judged(hub, places[i], answers.ptr<float>(static_cast<int>(i))));
    return judgements;
}

std::vector<Judgement> HoleJudge::judge(Pyramid& image, const cv::Point2d& hub, const GrayLevels& levels,
                                        const std::vector<HoleCandidate>& candidates)
{
    std::vector<Judgement> places(candidates.size());
    for (size_t i = 0; i < places.size(); ++i) {
        places[i].center = candidates[i].point;
        places[i].radius = candidates[i].radius;
    }
    std::vector<Judgement> judgements = look(image, hub, levels, places);
    std::vector<size_t> order(judgements.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return judgements[a].evidence > judgements[b].evidence; });
    order.resize(std::min(order.size(), mostTwice));
    while (!order.empty() && judgements[order.back()].evidence < worthTwo)
        order.pop_back();
    std::vector<Judgement> again;
    again.reserve(order.size());
    for (const size_t i : order)
        again.push_back(judgements[i]);
    again = look(image, hub, levels, again);
    for (size_t k = 0; k < order.size(); ++k)
        judgements[order[k]] = again[k];
    return judgements;
}

} // namespace finder
