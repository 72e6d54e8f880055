#pragma once

#include "OutlineFit.h"

#include <vector>

namespace finder {

/// A circle round the hub, found in the small picture.
struct RimGuess
{
    Outline outline;            ///< pixels of the small picture
    bool brightOutside = false; ///< side of the edge that is brighter
    double coverage = 0;        ///< share of the circumference with an edge, 0 to 1
};

/// Finds the hub's rim in a small picture: the edges vote for the centre that their normals run through, then the
/// circles around that centre are read from rays. Every concentric edge of a wheel helps to find the centre; spokes,
/// lettering and missing arcs cost a few votes only. Keeps its buffers; one instance per thread.
class CoarseRim
{
public:
    /// The circles with a radius in `radius` and a centre no farther than `maxOffset` (share of the picture's shorter
    /// side) from the middle, the outermost that is nearly as complete as the best first; empty when there is none.
    std::vector<RimGuess> find(const cv::Mat& small, const Range& radius, double maxOffset);

private:
    void computeGradients(const cv::Mat& small);
    float chooseThreshold() const;
    void vote(const Range& radius, const cv::Rect& window);
    void voteFrom(int x, int y, const Range& radius, const cv::Rect& window);
    std::vector<cv::Point> centers(const cv::Rect& window) const;
    std::vector<RimGuess> circlesAround(const cv::Point2d& center, const Range& radius) const;
    RimGuess refine(const cv::Point2d& center, double radius, bool brightOutside) const;

    cv::Mat m_smooth;
    cv::Mat m_gx;
    cv::Mat m_gy;
    cv::Mat m_magnitude;
    cv::Mat m_votes;
    float m_threshold = 0;
};

} // namespace finder
