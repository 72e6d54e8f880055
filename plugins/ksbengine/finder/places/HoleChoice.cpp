#include "HoleChoice.h"

#include "Views.h"
#include "finder/HoleExamples.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace finder {

namespace {

// Measured as correlation with the best of three pictures: wheels of one make under one light 0.97 in the median,
// wheels that differ in everything but their design 0.67, another design's hole 0.7 to 0.8, no hole 0.25 (0.65 at 95
// %).
constexpr double neutral = 0.5;
constexpr double ofLikeness = 4;
constexpr double mostFor = 2;
constexpr double mostAgainst = -1.5;
// A rejected place counts only where it is clearly meant, and more like this place than the model's holes.
constexpr double rejectedFrom = 0.7;
constexpr double ofRejected = -5;

/// Mean 0 and length 1, so that a product of two is their correlation; empty where there is nothing to see.
cv::Mat normalised(cv::Mat picture)
{
    cv::Scalar mean, spread;
    cv::meanStdDev(picture, mean, spread);
    const double length = spread[0] * HoleView::side;
    if (length < 1)
        return {};
    return (picture - mean[0]) / length;
}

std::vector<cv::Mat> picturesOf(const QVector<HoleExample>& examples)
{
    std::vector<cv::Mat> pictures;
    for (const HoleExample& example : examples) {
        cv::Mat small, real;
        cv::resize(example.patch, small, {HoleView::side, HoleView::side}, 0, 0, cv::INTER_AREA);
        small.convertTo(real, CV_32F);
        const cv::Mat picture = normalised(real);
        if (!picture.empty())
            pictures.push_back(picture);
    }
    return pictures;
}

/// The greatest correlation with any of the pictures; -1 when there are none.
double likeness(const cv::Mat& picture, const std::vector<cv::Mat>& pictures)
{
    double most = -1;
    for (const cv::Mat& other : pictures)
        most = std::max(most, picture.dot(other));
    return most;
}

// Weights by logistic regression of "which of these places, or none, is the hole" over wheels that the judge has not
// learnt from. Without a model, size weighs a third of what the regression gives it: where a world's holes are, and how
// large, is that world's habit.
struct Weights
{
    double evidence;
    double place;
    double size;
    double round;
    double offset;
};
constexpr Weights ofTaught{1.17, 2.0, 1.7, -3, 0};
constexpr Weights ofAuto{1.16, 1.3, 0.8, -3.9, -1};

constexpr double taughtPlaceSigma = 0.03; // of the ring's radius
constexpr double taughtSizeSigma = 0.18;  // logarithm of the radius
constexpr double priorPlace = 0.875;      // of the rim's radius, where the ledge of most wheels is
constexpr double priorPlaceSigma = 0.05;
constexpr double priorSize = 0.028; // of the rim's radius
constexpr double priorSizeSigma = 0.6;

// Holes of a round: of one size (logarithm), on one ring (share of the rim's radius), each about as likely.
constexpr double alikeSize = 0.16;
constexpr double alikeRing = 0.012;
constexpr double alikeOdds = 3;
constexpr double leastOfRound = -1.5; // evidence
constexpr int fewestOfRound = 2;      // others

// A second place could be the hole as well where it is nearly as likely, or likely enough by itself and not much less.
constexpr double rivalOdds = 1.2;
constexpr double clearRivalOdds = 2;
constexpr double clear = 3;

/// What a deviation of so many sigmas adds; its tails are heavy, since one wheel may be unlike the one that was taught.
double deviationOdds(double sigmas)
{
    return -std::log1p(sigmas * sigmas);
}

double placeOdds(double reach, const HoleModel& model, double rim)
{
    if (model.ringRadius <= 0)
        return deviationOdds((reach / rim - priorPlace) / priorPlaceSigma);
    const double ring = model.ringRange(rim).middle();
    return deviationOdds((reach - ring) / (taughtPlaceSigma * ring));
}

double sizeOdds(double radius, const HoleModel& model, double rim)
{
    if (model.holeRadius <= 0)
        return deviationOdds(std::log(radius / (priorSize * rim)) / priorSizeSigma);
    return deviationOdds(std::log(radius / model.holeRange(rim).middle()) / taughtSizeSigma);
}

bool sameSpot(const RankedHole& one, const RankedHole& other)
{
    return cv::norm(one.seen.center - other.seen.center) < 1.1 * std::max(one.seen.radius, other.seen.radius);
}

bool ofOneRound(const RankedHole& one, const RankedHole& other, const Outline& hub)
{
    const auto reach = [&](const RankedHole& hole) { return cv::norm(hole.seen.center - hub.center); };
    return !sameSpot(one, other) && std::abs(std::log(one.seen.radius / other.seen.radius)) < alikeSize &&
           std::abs(reach(one) - reach(other)) < alikeRing * hub.radius &&
           std::min(one.seen.evidence, other.seen.evidence) > leastOfRound &&
           std::abs(one.seen.evidence - other.seen.evidence) < alikeOdds;
}

void weigh(const HoleModel& model, const Outline& hub, std::vector<RankedHole>& holes)
{
    const Weights& weights = model.ringRadius > 0 && model.holeRadius > 0 ? ofTaught : ofAuto;
    for (RankedHole& hole : holes) {
        const double reach = cv::norm(hole.seen.center - hub.center);
        hole.place = weights.place * placeOdds(reach, model, hub.radius);
        hole.size = weights.size * sizeOdds(hole.seen.radius, model, hub.radius);
        const auto others = std::count_if(holes.begin(), holes.end(), [&](const RankedHole& other) {
            return &other != &hole && ofOneRound(hole, other, hub);
        });
        hole.company = others >= fewestOfRound ? weights.round : 0;
        hole.odds = weights.offset + weights.evidence * hole.seen.evidence + hole.place + hole.size + hole.examples +
                    hole.company;
    }
}

/// One of the places is the hole, or none is: their odds share one probability.
void share(std::vector<RankedHole>& holes)
{
    double all = 1;
    for (size_t i = 0; i < holes.size(); ++i) {
        const bool again = std::any_of(holes.begin(), holes.begin() + static_cast<std::ptrdiff_t>(i),
                                       [&](const RankedHole& better) { return sameSpot(better, holes[i]); });
        all += again ? 0 : std::exp(holes[i].odds);
    }
    for (RankedHole& hole : holes)
        hole.score = std::min(1.0, std::exp(hole.odds) / all);
}

Doubt doubtOf(Lookalike lookalike)
{
    switch (lookalike) {
    case Lookalike::Flat:
        return Doubt::Flat;
    case Lookalike::Letter:
        return Doubt::Letter;
    case Lookalike::Edge:
        return Doubt::Edge;
    default:
        return Doubt::Ragged;
    }
}

/// The greatest of what speaks against a place.
Doubt doubtOf(const RankedHole& hole)
{
    const std::array<std::pair<double, Doubt>, 5> against{{
        {hole.seen.evidence, doubtOf(hole.seen.lookalike)},
        {hole.place, Doubt::OffRing},
        {hole.size, Doubt::OtherSize},
        {hole.examples, Doubt::Rejected},
        {hole.company, Doubt::OneOfMany},
    }};
    return std::min_element(against.begin(), against.end())->second;
}

bool couldBe(const RankedHole& rival, const RankedHole& best)
{
    return best.odds - rival.odds < (rival.odds > clear ? clearRivalOdds : rivalOdds);
}

} // namespace

ExampleMatch::ExampleMatch(const HoleExamples& examples)
    : m_holes(picturesOf(examples.holes))
    , m_rejected(picturesOf(examples.rejected))
{
}

double ExampleMatch::odds(Pyramid& image, const cv::Point2d& hub, const Judgement& place) const
{
    const cv::Point2d arm = place.center - hub;
    cv::Mat seen(HoleView::side, HoleView::side, CV_32F);
    HoleView{place.center, arm / std::max(1e-6, cv::norm(arm)), HoleExample::patchReach * place.radius}.sample(
        image, seen.ptr<float>());
    const cv::Mat picture = normalised(seen);
    if (picture.empty())
        return mostAgainst;
    const double hole = likeness(picture, m_holes);
    const double rejected = likeness(picture, m_rejected);
    double odds = m_holes.empty() ? 0 : std::clamp(ofLikeness * (hole - neutral), mostAgainst, mostFor);
    if (rejected > rejectedFrom && rejected > hole)
        odds += ofRejected * (rejected - rejectedFrom) / (1 - rejectedFrom);
    return odds;
}

HoleChoice chooseHole(const HoleModel& model, const Outline& hub, std::vector<RankedHole>* holes)
{
    HoleChoice choice;
    if (holes->empty()) {
        choice.doubt = Doubt::NothingSeen;
        return choice;
    }
    weigh(model, hub, *holes);
    std::stable_sort(holes->begin(), holes->end(),
                     [](const RankedHole& a, const RankedHole& b) { return a.odds > b.odds; });
    share(*holes);
    const RankedHole& best = holes->front();
    const auto rival =
        std::find_if(holes->begin(), holes->end(), [&](const RankedHole& hole) { return !sameSpot(hole, best); });
    choice.runnerUp = rival == holes->end() ? 0 : rival->score;
    const bool close = rival != holes->end() && couldBe(*rival, best);
    if (best.score >= model.scoreLimit && !close)
        choice.error = FindError::None;
    else if (close && 1 / (1 + std::exp(-best.odds)) >= model.scoreLimit)
        choice.error = FindError::Ambiguous;
    if (choice.error == FindError::Ambiguous)
        choice.doubt = Doubt::TwoAlike;
    else if (choice.error != FindError::None)
        choice.doubt = doubtOf(best);
    return choice;
}

} // namespace finder
