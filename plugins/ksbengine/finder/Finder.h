#pragma once

#include "CoarseRim.h"
#include "FindResult.h"
#include "HoleCandidates.h"
#include "HoleFit.h"
#include "HoleModel.h"
#include "Reduce.h"
#include "RimFit.h"
#include "RingMap.h"

#include <vector>

namespace finder {

/// A candidate with what its measurement gave, for the designer.
struct RankedHole
{
    HoleCandidate candidate;
    HoleFit hole;
};

/// Everything the finder saw on its way, stage by stage; what a stage did not reach is empty.
struct FindTrace
{
    RimFit rim;
    std::vector<RankedHole> holes; ///< best first
};

/// Locates the valve hole of one wheel, coarse to fine: reduced picture, rim, unwrapped ring, candidates, measurement
/// at full resolution. Refuses rather than guesses. Keeps its buffers from image to image, so use one instance per
/// thread; it starts no threads itself.
class Finder
{
public:
    /// `gray` is 8-bit with one channel and any stride; any other matrix is answered with BadImage.
    FindResult find(const cv::Mat& gray, const HoleModel& model);

    /// What the last find() saw.
    const FindTrace& trace() const { return m_trace; }
    /// The ring of the last find(), unwrapped.
    const RingMap& ring() const { return m_ring; }

private:
    FindError judgeLight(const cv::Mat& small);
    FindError locateHub(const cv::Mat& gray, const HoleModel& model, int factor, FindResult* result);
    FindError locateHole(const cv::Mat& gray, const HoleModel& model, FindResult* result);
    bool fitsRim(const cv::Mat& gray, const Outline& coarse, const Range& radius, int factor);
    void collectCandidates(const HoleModel& model, double rim, std::vector<HoleCandidate>* found);
    bool hasTwin(const RankedHole& hole) const;
    const RankedHole& wholeOf(const RankedHole& spot) const;
    double runnerUp() const;
    FindError decide(const cv::Mat& gray, const HoleModel& model, FindResult* result);
    void measure(const cv::Mat& gray, const HoleModel& model, const HoleFit& hole, FindResult* result) const;

    Reducer m_reducer;
    CoarseRim m_coarse;
    RingMap m_ring;
    HoleCandidates m_candidates;
    FindTrace m_trace;
    ImageLevels m_levels;
};

} // namespace finder
