#include "Finder.h"

#include "HoleExamples.h"
#include "Pyramid.h"
#include "finder/mouth/MouthFit.h"
#include "finder/places/HoleChoice.h"

#include <algorithm>

namespace finder {

namespace {

constexpr int leastSide = 64;
constexpr int greatestSide = 32000;
constexpr double maxHubOffset = 0.13;    // of the shorter side; wheels lie up to 8 % off
constexpr int coarseSide = 200;          // least pixels of the shorter side where the hub is looked for
constexpr int rimSide = 640;             // and where the rim is measured: finer levels are not sharper in proportion
constexpr double leastRimCoverage = 0.4; // of the circumference
constexpr double coarseSlack = 0.04;     // of the rim's radius: in the small picture its edge and its bevel are one
constexpr double fineSlack = 0.01;
constexpr double looseRim = 0.65;    // pixels where it is measured, root mean square; of chance circles 0.7 and more
constexpr double leastContrast = 12; // gray levels between the darkest and the brightest twentieth
constexpr double unfocused = 0.6;    // blur, as a share of the hole's radius
constexpr double typicalRing = 0.93; // of the rim's radius, within which the ring of most wheels lies
constexpr size_t mostRims = 4;       // circles that are looked around as the rim
constexpr double otherRim = 0.03;    // of the radius, by which circles differ that are not one rim
constexpr double likeRim = 0.06;     // logarithm of the radius, by which a rim may differ from the model's
constexpr double beyondDoubt = 0.9;  // probability of a hole, from which no other rim is looked around
constexpr double ringSlack = 0.03;   // of the rim's radius: what a tilt, or an inner edge taken for the rim, moves
constexpr int mostWithModel = 8;     // candidates that are judged
constexpr int mostWithoutModel = 14; // where place and size are not known; rounds of vent holes are among them

/// The sizes to look for, largest first, so that each size of a range is within a third of one of them.
std::vector<double> sizesWithin(const Range& radius)
{
    constexpr double ratio = 1.7;
    const int count = std::max(1, cvCeil(std::log(radius.high / radius.low) / std::log(ratio)));
    std::vector<double> sizes;
    sizes.reserve(static_cast<size_t>(count));
    for (int i = count - 1; i >= 0; --i)
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
    const double reach = (model.ringRadius > 0 ? ring.middle() : typicalRing * hub.radius) + hole.low;
    const cv::Rect2d seen(reach, reach, gray.cols - 1 - 2 * reach, gray.rows - 1 - 2 * reach);
    return seen.width < 0 || seen.height < 0 || !seen.contains(hub.center);
}

/// Those of about the size of the model's rim first; without a model they stay as they are.
void sortByLikeness(double radius, std::vector<Outline>* circles)
{
    const auto isLike = [radius](const Outline& circle) {
        return std::abs(std::log(circle.radius / radius)) < likeRim;
    };
    if (radius > 0)
        std::stable_partition(circles->begin(), circles->end(), isLike);
}

bool sameRim(const Outline& one, const Outline& other)
{
    const double near = otherRim * one.radius;
    return std::abs(one.radius - other.radius) < near && cv::norm(one.center - other.center) < near;
}

} // namespace

FindError Finder::judgeLight(const cv::Mat& small)
{
    m_levels = grayLevelsOf(small);
    if (m_levels.bright - m_levels.dark >= leastContrast)
        return FindError::None;
    if (m_levels.bright < 40)
        return FindError::TooDark;
    if (m_levels.dark > 215)
        return FindError::TooBright;
    return FindError::NoHub;
}

/// The level of the pyramid where rims are measured.
int Finder::rimLevel()
{
    return Pyramid::levelOfSide(m_pyramid.level(0).size(), rimSide);
}

/// Whether a rim of the wanted radius is within `reach` pixels of the guess.
bool Finder::fitsRim(const Outline& guess, double reach, const Range& radius, RimFit* rim)
{
    const int k = rimLevel();
    const double scale = Pyramid::scale(k);
    *rim = enlarged(fitRim(m_pyramid.level(k), guess.enlarged(1 / scale), reach / scale), scale);
    const double found = rim->outline.radius;
    return rim->valid && rim->coverage >= leastRimCoverage && found > (1 - fineSlack) * radius.low &&
           found < (1 + fineSlack) * radius.high;
}

/// Whether its points scatter like those of a circle drawn by chance through rollers or a perforated belt.
bool Finder::isLoose(const RimFit& rim)
{
    return rim.residual > looseRim * Pyramid::scale(rimLevel());
}

/// Looks around one circle that could be the rim; whether a hole is beyond doubt now.
bool Finder::lookAround(const cv::Mat& gray, const HoleModel& model, RimFit rim)
{
    Look look;
    look.result.hub = rim.outline;
    look.result.axis = hubAxis(rim.outline, model.camera.in(gray.size()), model.holeDepth);
    look.result.rimCoverage = rim.coverage;
    look.trace.rim = std::move(rim);
    look.result.error = locateHole(gray, model, &look);
    adopt(std::move(look));
    return m_best.result.score > beyondDoubt;
}

/// Looks around the circles of a level that fit a rim of the wanted radius, those of the model's size first, until a
/// hole is beyond doubt; loose ones are kept for later. Whether there was a circle to look around.
bool Finder::lookAround(const cv::Mat& gray, const HoleModel& model, const Pass& pass, std::vector<RimFit>* loose)
{
    const Range radius = model.rimRange(gray.rows);
    const double scale = Pyramid::scale(pass.level);
    const Range wide{(1 - pass.slack) * radius.low / scale, (1 + pass.slack) * radius.high / scale};
    std::vector<Outline> circles = m_coarse.find(m_pyramid.level(pass.level), wide, maxHubOffset);
    sortByLikeness(model.rimRadius / scale, &circles);
    std::vector<Outline> seen;
    bool looked = false;
    for (const Outline& circle : circles) {
        RimFit rim;
        const auto isSame = [&](const Outline& other) { return sameRim(rim.outline, other); };
        if (!fitsRim(circle.enlarged(scale), scale + 0.008 * scale * circle.radius, radius, &rim) ||
            std::any_of(seen.begin(), seen.end(), isSame))
            continue;
        seen.push_back(rim.outline);
        if (isLoose(rim)) {
            loose->push_back(std::move(rim));
        } else {
            looked = true;
            if (lookAround(gray, model, std::move(rim)))
                break;
        }
        if (seen.size() == mostRims)
            break;
    }
    return looked;
}

/// A wheel has several concentric circles, and with its tyre on one more: which of them is the rim shows by the hole.
/// So each that could be the rim is looked around, until a hole is beyond doubt. In a smaller picture a rim's edge and
/// its bevel are one, and in a still smaller one the pattern of a perforated belt is plain gray; loose circles come
/// last.
void Finder::search(const cv::Mat& gray, const HoleModel& model)
{
    m_pyramid.build(gray);
    const int k = Pyramid::levelOfSide(gray.size(), coarseSide);
    m_best.result.error = judgeLight(m_pyramid.level(k));
    if (m_best.result.error != FindError::None)
        return;
    m_best.result.error = FindError::NoHub;
    std::vector<RimFit> loose;
    for (const Pass& pass : {Pass{k, 0}, Pass{k, coarseSlack}, Pass{k + 1, coarseSlack}}) {
        if (lookAround(gray, model, pass, &loose))
            break;
    }
    for (RimFit& rim : loose) {
        if (m_best.result.score > beyondDoubt || lookAround(gray, model, std::move(rim)))
            break;
    }
}

/// Takes a look over the best one so far where it is better: the first of those without a hole stays.
void Finder::adopt(Look look)
{
    const bool first = m_best.result.error == FindError::NoHub;
    const bool better = look.result.found() && (!m_best.result.found() || look.result.score > m_best.result.score);
    if (first || better)
        m_best = std::move(look);
}

std::vector<HoleCandidate> Finder::candidates(const HoleModel& model, const Outline& hub, RingMap* ring)
{
    const Range named = model.ringRange(hub.radius);
    const double beyond = ringSlack * hub.radius;
    const Range reach{named.low - beyond, named.high + beyond};
    const int most = model.ringRadius > 0 && model.holeRadius > 0 ? mostWithModel : mostWithoutModel;
    std::vector<HoleCandidate> found;
    for (const double size : sizesWithin(model.holeRange(hub.radius))) {
        const double margin = HoleCandidates::margin * size;
        ring->unwrap(m_pyramid, hub, {std::max(1.0, reach.low - margin), reach.high + margin},
                     size / HoleCandidates::mapRadius);
        m_candidates.find(*ring, reach, size, most, &found);
    }
    return distinct(std::move(found), most);
}

FindError Finder::locateHole(const cv::Mat& gray, const HoleModel& model, Look* look)
{
    const Outline& hub = look->result.hub;
    std::vector<RankedHole>& holes = look->trace.holes;
    const std::vector<HoleCandidate> places = candidates(model, hub, &look->trace.ring);
    for (const Judgement& judgement : m_judge.judge(m_pyramid, hub.center, m_levels, places))
        holes.push_back({judgement});
    if (model.examples && !model.examples->isEmpty()) {
        const ExampleMatch match(*model.examples);
        for (RankedHole& hole : holes)
            hole.examples = match.odds(m_pyramid, hub.center, hole.seen);
    }
    const HoleChoice choice = chooseHole(model, {look->result.axis, hub.radius, hub.c2, hub.s2}, &holes);
    look->result.doubt = choice.doubt;
    if (ringLeaves(gray, hub, model) && (holes.empty() || holes.front().score <= beyondDoubt))
        return FindError::CutOff; // the hole may lie outside
    if (holes.empty())
        return choice.error;
    const RankedHole& best = holes.front();
    look->result.score = best.score;
    look->result.runnerUpScore = choice.runnerUp;
    look->trace.outline = measureOutline(gray, best.seen.center, best.seen.radius);
    if (choice.error == FindError::None)
        measure(gray, model, look);
    return choice.error;
}

void Finder::measure(const cv::Mat& gray, const HoleModel& model, Look* look)
{
    const Judgement& seen = look->trace.holes.front().seen;
    FindResult& result = look->result;
    result.hole = seen.center;
    result.holeRadius = seen.radius;
    result.edgePoints = look->trace.outline.fit.used;
    result.residual = look->trace.outline.fit.residual;
    Mouth& start = look->trace.mouthStart;
    start.center = seen.center;
    start.radius = seen.radius;
    start.outerRadius = seen.outerRadius;
    TaughtMouth taught;
    if (model.holeRadius > 0)
        taught.radius = model.holeRange(result.hub.radius).middle();
    if (model.ringRadius > 0)
        taught.ring = model.ringRange(result.hub.radius).middle();
    const Mouth mouth = fitMouth(gray, start, result.hub.center, taught);
    look->trace.mouth = result.mouth = mouth;
    if (mouth.valid) {
        result.hole = mouth.center;
        result.holeRadius = mouth.radius;
    }
    result.angle = screenAngle(result.axis, result.hole);
}

FindResult Finder::find(const cv::Mat& gray, const HoleModel& model)
{
    m_best = {};
    if (!usable(gray))
        return m_best.result;
    search(gray, model);
    FindResult& result = m_best.result;
    const double smallest = model.holeRange(result.hub.radius).middle();
    if (result.error == FindError::NoHole && m_best.trace.rim.edgeWidth > unfocused * smallest)
        result.error = FindError::OutOfFocus;
    return result;
}

} // namespace finder
