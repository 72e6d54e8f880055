#pragma once

#include "HoleJudge.h"
#include "finder/FindResult.h"
#include "finder/HoleModel.h"

#include <opencv2/core.hpp>

#include <vector>

namespace finder {

/// A judged place with everything that speaks for and against it.
struct RankedHole
{
    Judgement seen;
    double place = 0;    ///< what its distance from the hub adds to the logarithm of the odds
    double size = 0;     ///< what its size adds
    double examples = 0; ///< what the model's examples add
    double company = 0;  ///< what others like it add: bolt and vent holes come in rounds, the valve hole is alone
    double odds = 0;     ///< logarithm of the odds that it is the model's hole, were it the only place
    double score = 0;    ///< probability that it is the hole, with all other places in view
    Outline outline() const { return {seen.center, seen.radius, 0, 0}; }
};

/// Which place is the hole, or why none is.
struct HoleChoice
{
    FindError error = FindError::NoHole;
    double runnerUp = 0; ///< score of the second best place
    Doubt doubt = Doubt::None;
};

/// Weighs places against each other and sorts them, best first. `hub` is the rim's outline. Pure; any thread.
HoleChoice chooseHole(const HoleModel& model, const Outline& hub, std::vector<RankedHole>* holes);

/// Compares places with what a model has been shown. One instance per find.
class ExampleMatch
{
public:
    explicit ExampleMatch(const HoleExamples& examples);

    /// What likeness to the model's holes, and to what was rejected, adds to the logarithm of the odds that this place
    /// is its hole.
    double odds(Pyramid& image, const cv::Point2d& hub, const Judgement& place) const;

private:
    std::vector<cv::Mat> m_holes; ///< each of mean 0 and length 1
    std::vector<cv::Mat> m_rejected;
};

} // namespace finder
