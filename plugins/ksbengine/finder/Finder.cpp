#include "Finder.h"

#include "GrayLevels.h"
#include "MouthFit.h"

#include <algorithm>

namespace finder {

namespace {

constexpr int leastSide = 64;
constexpr int greatestSide = 32000;
constexpr double maxHubOffset = 0.13;    // of the shorter side; wheels lie up to 8 % off
constexpr double factorOfDetail = 10;    // reduction above which an image has more pixels than detail
constexpr double leastRimCoverage = 0.4; // of the circumference
constexpr double coarseSlack = 0.04;     // of the rim's radius: in the small picture its edge and its bevel are one
constexpr double fineSlack = 0.01;
constexpr double leastContrast = 12; // gray levels between the darkest and the brightest twentieth
constexpr double unfocused = 0.6;    // blur, as a share of the hole's radius
constexpr double asGood = 0.85;      // a runner-up with this share of the best score could be the hole as well
// Drain holes come in sets: holes of the same size (share) on the same ring (share of the rim's radius) are no valve
// hole if they are nearly as good (share of the score).
constexpr double twinSize = 0.25;
constexpr double twinRing = 0.02;
constexpr double twinScore = 0.7;
// Beside a valve the dark looks like a smaller hole, and rounder than the whole.
constexpr double asWhole = 0.7;
constexpr double muchLarger = 1.3;
constexpr double slackOfPlace = 0.025; // of the ring's radius, within which a hole is where it is expected
constexpr double usualRing = 0.87;     // of the rim's radius, where the ledge of most wheels is
constexpr double slackOfUsual = 0.07;
constexpr double faintest = 0.25;     // of the strongest contrast, for a spot that is worth measuring
constexpr double fainter = 0.5;       // the same, once a hole is found that is
constexpr double beyondDoubt = 0.8;   // as good as this
constexpr int candidatesMeasured = 8; // for each size looked for

/// The sizes to look for, so that each size of a range is within a third of one of them.
std::vector<double> sizesWithin(const Range& radius)
{
    constexpr double ratio = 1.7;
    const int count = std::max(1, cvCeil(std::log(radius.high / radius.low) / std::log(ratio)));
    std::vector<double> sizes;
    sizes.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        sizes.push_back(radius.low * std::pow(radius.high / radius.low, (i + 0.5) / count));
    return sizes;
}

bool usable(const cv::Mat& gray)
{
    return gray.type() == CV_8UC1 && std::min(gray.rows, gray.cols) >= leastSide &&
           std::max(gray.rows, gray.cols) <= greatestSide;
}

/// Whether a hole on the model's ring could lie outside of the image.
bool ringLeaves(const cv::Mat& gray, const Outline& hub, const HoleModel& model)
{
    const Range ring = model.ringRange(hub.radius);
    const Range hole = model.holeRange(hub.radius);
    const double reach = (model.ringRadius > 0 ? ring.middle() : ring.high) + hole.low;
    const cv::Rect2d seen(reach, reach, gray.cols - 1 - 2 * reach, gray.rows - 1 - 2 * reach);
    return seen.width < 0 || seen.height < 0 || !seen.contains(hub.center);
}

/// What lies near the end of the ring's tolerance is rather another feature of the wheel: a taught ring is known better
/// than its tolerance says, and without one the hole is expected on the ledge.
double placeScore(double radius, double rim, const HoleModel& model)
{
    const Range ring = model.ringRange(rim);
    const bool taught = model.ringRadius > 0;
    const double middle = taught ? ring.middle() : usualRing * rim;
    const double slack = (taught ? slackOfPlace : slackOfUsual) * middle;
    const double most = std::max(radius < middle ? middle - ring.low : ring.high - middle, slack + 0.01 * middle);
    return 1 - 0.7 * std::clamp((std::abs(radius - middle) - slack) / (most - slack), 0.0, 1.0);
}

} // namespace

FindError Finder::judgeLight(const cv::Mat& small)
{
    const GrayLevels levels = grayLevelsOf(small);
    m_levels.black = levels.black;
    if (levels.bright - levels.dark >= leastContrast)
        return FindError::None;
    if (levels.bright < 40)
        return FindError::TooDark;
    if (levels.dark > 215)
        return FindError::TooBright;
    return FindError::NoHub;
}

FindError Finder::locateHub(const cv::Mat& gray, const HoleModel& model, int factor, FindResult* result)
{
    const cv::Mat& small = m_reducer.reduce(gray, factor);
    const FindError light = judgeLight(small);
    if (light != FindError::None)
        return light;
    const Range radius = model.rimRange(gray.rows);
    for (const double slack : {0.0, coarseSlack}) {
        const Range wide{(1 - slack) * radius.low / factor, (1 + slack) * radius.high / factor};
        for (const Outline& outline : m_coarse.find(small, wide, maxHubOffset)) {
            if (!fitsRim(gray, outline, radius, factor))
                continue;
            result->hub = m_trace.rim.outline;
            result->rimCoverage = m_trace.rim.coverage;
            return FindError::None;
        }
    }
    return FindError::NoHub;
}

bool Finder::fitsRim(const cv::Mat& gray, const Outline& coarse, const Range& radius, int factor)
{
    const Outline large{{Reducer::toLarge(coarse.center.x, factor), Reducer::toLarge(coarse.center.y, factor)},
                        coarse.radius * factor,
                        coarse.c2 * factor,
                        coarse.s2 * factor};
    m_trace.rim = fitRim(gray, large, factor + 0.008 * large.radius, std::max(1.0, factor / factorOfDetail));
    const double found = m_trace.rim.outline.radius;
    return m_trace.rim.valid && m_trace.rim.coverage >= leastRimCoverage && found > (1 - fineSlack) * radius.low &&
           found < (1 + fineSlack) * radius.high;
}

void Finder::collectCandidates(const HoleModel& model, double rim, std::vector<HoleCandidate>* found)
{
    const Range ringRadii = model.ringRange(rim);
    const auto likelihood = [&](double radius) { return placeScore(radius, rim, model); };
    const RingMap half = m_ring.halved();
    for (const double size : sizesWithin(model.holeRange(rim))) {
        const bool large = size > 6 * m_ring.step();
        m_candidates.find(large ? half : m_ring, ringRadii, size, candidatesMeasured, likelihood, found);
    }
    std::stable_sort(found->begin(), found->end(),
                     [](const HoleCandidate& a, const HoleCandidate& b) { return a.rank > b.rank; });
}

FindError Finder::locateHole(const cv::Mat& gray, const HoleModel& model, FindResult* result)
{
    const Range ringRadii = model.ringRange(result->hub.radius);
    const Range holeRadii = model.holeRange(result->hub.radius);
    const double margin = 2.2 * holeRadii.high;
    const double step = std::max(1.0, holeRadii.low / 3.7);
    m_ring.unwrap(gray, result->hub, {std::max(1.0, ringRadii.low - margin), ringRadii.high + margin}, step);
    m_levels.noise = estimateNoise(gray);
    std::vector<HoleCandidate> candidates;
    collectCandidates(model, result->hub.radius, &candidates);
    double highest = 0;
    for (const HoleCandidate& candidate : candidates) {
        // Beside a hole that is beyond doubt, on a ring that was taught, what is much fainter is no rival.
        const bool decided = model.ringRadius > 0 && highest > beyondDoubt;
        if (candidate.rank < (decided ? fainter : faintest) * candidates.front().rank)
            break;
        HoleFit hole = measureHole(gray, candidate.point, candidate.size, holeRadii, m_levels);
        if (!hole.fit.valid)
            continue;
        const double distance = cv::norm(hole.fit.outline.center - result->hub.center);
        hole.score.place = placeScore(distance, result->hub.radius, model);
        highest = std::max(highest, hole.score.total());
        m_trace.holes.push_back({candidate, hole});
    }
    std::stable_sort(m_trace.holes.begin(), m_trace.holes.end(), [](const RankedHole& a, const RankedHole& b) {
        return a.hole.score.total() > b.hole.score.total();
    });
    return decide(gray, model, result);
}

/// A valve leaves dark parts beside it that look like small holes within the hole.
bool sameSpot(const Outline& one, const Outline& other)
{
    return cv::norm(one.center - other.center) < 1.1 * std::max(one.radius, other.radius);
}

bool Finder::hasTwin(const RankedHole& hole) const
{
    const Outline& one = hole.hole.fit.outline;
    const double reach = cv::norm(one.center - m_trace.rim.outline.center);
    for (const RankedHole& other : m_trace.holes) {
        const Outline& two = other.hole.fit.outline;
        const bool apart = cv::norm(one.center - two.center) > one.radius + two.radius;
        const bool alike = std::abs(one.radius - two.radius) < twinSize * std::max(one.radius, two.radius);
        const bool sameRing =
            std::abs(reach - cv::norm(two.center - m_trace.rim.outline.center)) < twinRing * m_trace.rim.outline.radius;
        if (apart && alike && sameRing && other.hole.score.total() > twinScore * hole.hole.score.total())
            return true;
    }
    return false;
}

double Finder::runnerUp() const
{
    const Outline* first = nullptr;
    for (const RankedHole& ranked : m_trace.holes) {
        const Outline& outline = ranked.hole.fit.outline;
        if (first && !sameSpot(outline, *first))
            return ranked.hole.score.total();
        if (!first)
            first = &outline;
    }
    return 0;
}

/// The hole itself, where `spot` is a dark part within it.
const RankedHole& Finder::wholeOf(const RankedHole& spot) const
{
    const RankedHole* whole = &spot;
    for (const RankedHole& other : m_trace.holes) {
        const Outline& inner = whole->hole.fit.outline;
        const Outline& outer = other.hole.fit.outline;
        if (other.hole.score.total() >= asWhole * spot.hole.score.total() && outer.radius > muchLarger * inner.radius &&
            sameSpot(inner, outer))
            whole = &other;
    }
    return *whole;
}

FindError Finder::decide(const cv::Mat& gray, const HoleModel& model, FindResult* result)
{
    const RankedHole* best = nullptr;
    double rival = 0;
    bool twins = false;
    result->runnerUpScore = runnerUp();
    for (const RankedHole& spot : m_trace.holes) {
        result->score = std::max(result->score, spot.hole.score.total());
        if (spot.hole.score.total() < model.scoreLimit)
            break;
        const RankedHole& whole = wholeOf(spot);
        if (best && sameSpot(whole.hole.fit.outline, best->hole.fit.outline))
            continue;
        if (hasTwin(whole)) {
            twins = true;
        } else if (!best) {
            best = &whole;
        } else {
            rival = spot.hole.score.total();
            break;
        }
    }
    if (!best)
        return twins ? FindError::Ambiguous : FindError::NoHole;
    result->score = best->hole.score.total();
    if (rival > asGood * result->score)
        return FindError::Ambiguous;
    measure(gray, model, best->hole, result);
    return FindError::None;
}

void Finder::measure(const cv::Mat& gray, const HoleModel& model, const HoleFit& hole, FindResult* result) const
{
    result->hole = hole.fit.outline.center;
    result->holeRadius = hole.fit.outline.radius;
    result->edgePoints = hole.fit.used;
    result->residual = hole.fit.residual;
    Mouth start;
    start.center = result->hole;
    start.radius = result->holeRadius;
    TaughtMouth taught;
    if (model.holeRadius > 0) {
        taught.radius = model.holeRange(result->hub.radius).middle();
        start.radius = std::clamp(start.radius, 0.8 * taught.radius, 1.1 * taught.radius);
    }
    if (model.ringRadius > 0)
        taught.ring = model.ringRange(result->hub.radius).middle();
    const Mouth mouth = fitMouth(gray, start, result->hub.center, taught);
    if (mouth.valid) {
        result->hole = mouth.center;
        result->holeRadius = mouth.radius;
    }
    result->angle = screenAngle(result->hub.center, result->hole);
}

FindResult Finder::find(const cv::Mat& gray, const HoleModel& model)
{
    FindResult result;
    m_trace = {};
    if (!usable(gray))
        return result;
    result.error = locateHub(gray, model, Reducer::factorFor(gray), &result);
    if (result.error != FindError::None)
        return result;
    if (ringLeaves(gray, result.hub, model)) {
        result.error = FindError::CutOff;
        return result;
    }
    result.error = locateHole(gray, model, &result);
    const double smallest = model.holeRange(result.hub.radius).middle();
    if (result.error == FindError::NoHole && m_trace.rim.edgeWidth > unfocused * smallest)
        result.error = FindError::OutOfFocus;
    return result;
}

} // namespace finder
