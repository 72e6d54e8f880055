#include "Finder.h"

#include <algorithm>
#include <array>

namespace finder {

namespace {

constexpr int leastSide = 64;
constexpr int greatestSide = 32000;
constexpr double maxHubOffset = 0.13;    // of the shorter side; wheels lie up to 8 % off
constexpr double leastRimCoverage = 0.4; // of the circumference
constexpr double leastContrast = 24;     // gray levels between the darkest and the brightest twentieth
constexpr double unfocused = 0.6;        // blur, as a share of the hole's radius
constexpr double asGood = 0.85;          // a runner-up with this share of the best score could be the hole as well
constexpr int candidatesMeasured = 16;   // for each size looked for

struct Levels
{
    double black;
    double dark;
    double bright;
};

Levels levelsOf(const cv::Mat& small)
{
    std::array<int, 256> histogram{};
    for (int y = 0; y < small.rows; ++y) {
        const uchar* row = small.ptr(y);
        for (int x = 0; x < small.cols; ++x)
            ++histogram[row[x]];
    }
    const auto level = [&](double share) {
        auto left = static_cast<int>(share * static_cast<double>(small.total()));
        int gray = 0;
        while (gray < 255 && left >= histogram[gray])
            left -= histogram[gray++];
        return static_cast<double>(gray);
    };
    return {level(0.002), level(0.05), level(0.95)};
}

/// The sizes to look for, so that each size of a range is within a third of one of them.
std::vector<double> sizesWithin(const Range& radius)
{
    constexpr double ratio = 1.7;
    const int count = std::max(1, cvCeil(std::log(radius.high / radius.low) / std::log(ratio)));
    std::vector<double> sizes;
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

} // namespace

FindError Finder::judgeLight(const cv::Mat& small)
{
    const Levels levels = levelsOf(small);
    m_black = levels.black;
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
    for (const RimGuess& guess : m_coarse.find(small, {radius.low / factor, radius.high / factor}, maxHubOffset)) {
        const Outline& o = guess.outline;
        const Outline large{{Reducer::toLarge(o.center.x, factor), Reducer::toLarge(o.center.y, factor)},
                            o.radius * factor,
                            o.c2 * factor,
                            o.s2 * factor};
        m_trace.rim = fitRim(gray, large, factor + 0.008 * large.radius);
        if (m_trace.rim.valid && m_trace.rim.coverage >= leastRimCoverage) {
            result->hub = m_trace.rim.outline;
            result->rimCoverage = m_trace.rim.coverage;
            return FindError::None;
        }
    }
    return FindError::NoHub;
}

void Finder::collectCandidates(const Range& ringRadii, const Range& holeRadii, std::vector<HoleCandidate>* found)
{
    for (const double size : sizesWithin(holeRadii))
        m_candidates.find(m_ring, ringRadii, size, candidatesMeasured, found);
}

FindError Finder::locateHole(const cv::Mat& gray, const HoleModel& model, FindResult* result)
{
    const Range ringRadii = model.ringRange(result->hub.radius);
    const Range holeRadii = model.holeRange(result->hub.radius);
    const double margin = 2.2 * holeRadii.high;
    const double step = std::max(1.0, holeRadii.low / 4);
    m_ring.unwrap(gray, result->hub, {std::max(1.0, ringRadii.low - margin), ringRadii.high + margin}, step);
    std::vector<HoleCandidate> candidates;
    collectCandidates(ringRadii, holeRadii, &candidates);
    for (const HoleCandidate& candidate : candidates) {
        const HoleFit hole = measureHole(gray, candidate.point, holeRadii, m_black);
        if (hole.fit.valid)
            m_trace.holes.push_back({candidate, hole});
    }
    std::stable_sort(m_trace.holes.begin(), m_trace.holes.end(), [](const RankedHole& a, const RankedHole& b) {
        return a.hole.score.total() > b.hole.score.total();
    });
    return decide(model, result);
}

FindError Finder::decide(const HoleModel& model, FindResult* result) const
{
    if (m_trace.holes.empty())
        return FindError::NoHole;
    const HoleFit& best = m_trace.holes.front().hole;
    result->score = best.score.total();
    for (const RankedHole& other : m_trace.holes) {
        if (cv::norm(other.hole.fit.outline.center - best.fit.outline.center) > best.fit.outline.radius) {
            result->runnerUpScore = other.hole.score.total();
            break;
        }
    }
    if (result->score < model.scoreLimit)
        return FindError::NoHole;
    if (result->runnerUpScore > asGood * result->score)
        return FindError::Ambiguous;
    result->hole = best.fit.outline.center;
    result->holeRadius = best.fit.outline.radius;
    result->edgePoints = best.fit.used;
    result->residual = best.fit.residual;
    result->angle = screenAngle(result->hub.center, result->hole);
    return FindError::None;
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
