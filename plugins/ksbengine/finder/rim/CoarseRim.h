#pragma once

#include "ConcentricFit.h"

#include <vector>

namespace finder {

/// Finds the hub in a small picture: the edges vote for the centre that their normals run through, then the concentric
/// circles around the best centres are read from rays. Every concentric edge of a wheel helps to find the centre;
/// spokes, lettering, rollers behind the wheel and missing arcs cost a few votes only. Keeps its buffers; one instance
/// per thread.
class CoarseRim
{
public:
    /// The circles with a radius in `radius`, around a centre no farther than `maxOffset` (share of the picture's
    /// shorter side) from the middle, in pixels of the small picture: those of the best centre first, and of these the
    /// outermost that is nearly as complete as the best. Empty when there is none.
    std::vector<Outline> find(const cv::Mat& small, const Range& radius, double maxOffset);

private:
    void computeGradients(const cv::Mat& small);
    void weighLocally();
    float chooseThreshold() const;
    void vote(const Range& radius, const cv::Rect& window);
    void voteFrom(int x, int y, const Range& radius, const cv::Rect& window);
    std::vector<cv::Point> centers(const cv::Rect& window) const;
    ConcentricFit circlesAround(const cv::Point2d& center, const Range& radius) const;

    cv::Mat m_smooth;
    cv::Mat m_gx;
    cv::Mat m_gy;
    cv::Mat m_magnitude;
    cv::Mat m_squares;
    cv::Mat m_votes;
    float m_threshold = 0;
};

} // namespace finder
