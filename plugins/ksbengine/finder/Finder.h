#pragma once

#include "FindResult.h"
#include "HoleModel.h"
#include "Pyramid.h"
#include "finder/places/HoleChoice.h"
#include "finder/places/HoleFit.h"
#include "finder/places/Views.h"
#include "finder/rim/CoarseRim.h"
#include "finder/rim/RimFit.h"

#include <vector>

namespace finder {

/// Everything the finder saw on its way, stage by stage; what a stage did not reach is empty.
struct FindTrace
{
    RimFit rim;
    RingMap ring;                  ///< unwrapped
    std::vector<RankedHole> holes; ///< best first
    HoleFit outline;               ///< of the best place, as a circle through its edges
    Mouth mouthStart;              ///< what the mouth's fit began from
    Mouth mouth;                   ///< what it made of that; not valid when it gave up
};

/// Locates the valve hole of one wheel, coarse to fine: reduced picture, rim, unwrapped ring, candidates, their
/// judgement, measurement at full resolution. Refuses rather than guesses. Keeps its buffers from image to image, so
/// use one instance per thread; it starts no threads itself.
class Finder
{
public:
    /// `gray` is 8-bit with one channel and any stride; any other matrix is answered with BadImage.
    FindResult find(const cv::Mat& gray, const HoleModel& model);

    /// What the last find() saw.
    const FindTrace& trace() const { return m_best.trace; }
    /// The ring of the last find(), unwrapped.
    const RingMap& ring() const { return m_best.trace.ring; }

private:
    /// What was seen with one of the circles taken for the rim.
    struct Look
    {
        FindResult result;
        FindTrace trace;
    };

    /// One search for circles: in which level of the pyramid, and by how much of the radius beyond the wanted ones.
    struct Pass
    {
        int level;
        double slack;
    };

    FindError judgeLight(const cv::Mat& small);
    void search(const cv::Mat& gray, const HoleModel& model);
    bool lookAround(const cv::Mat& gray, const HoleModel& model, const Pass& pass, std::vector<RimFit>* loose);
    bool lookAround(const cv::Mat& gray, const HoleModel& model, RimFit rim);
    void adopt(Look look);
    FindError locateHole(const cv::Mat& gray, const HoleModel& model, Look* look);
    bool fitsRim(const Outline& guess, double reach, const Range& radius, RimFit* rim);
    int rimLevel();
    bool isLoose(const RimFit& rim);
    std::vector<HoleCandidate> candidates(const HoleModel& model, const Outline& hub, RingMap* ring);
    static void measure(const cv::Mat& gray, const HoleModel& model, Look* look);

    Pyramid m_pyramid;
    CoarseRim m_coarse;
    HoleCandidates m_candidates;
    HoleJudge m_judge;
    Look m_best;
    GrayLevels m_levels{};
};

} // namespace finder
