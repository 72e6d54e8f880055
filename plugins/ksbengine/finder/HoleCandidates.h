#pragma once

#include "RingMap.h"

#include <functional>
#include <vector>

namespace finder {

/// A dark spot with brighter surroundings in the unwrapped ring.
struct HoleCandidate
{
    cv::Point2d point;   ///< image pixels, right to about a third of the hole's radius
    double contrast = 0; ///< gray levels between surroundings and inside
    double size = 0;     ///< radius that it was looked for with, pixels
    double rank = 0;     ///< contrast, less where a hole is less likely
};

/// How likely a hole is at this distance from the hub centre, 0 to 1.
using Likelihood = std::function<double(double)>;

/// Looks for dark spots of a size that are bright almost all round, so that edges, gaps between spokes and the ends of
/// dark strips do not count. Keeps its buffers; one instance per thread.
class HoleCandidates
{
public:
    /// Adds the spots of `radius` pixels (of the image) whose centre lies in the radii `ring`, at most `most`,
    /// highest rank first. Spots nearer than a radius to a higher one are left out.
    void find(const RingMap& ring, const Range& radii, double radius, int most, const Likelihood& likelihood,
              std::vector<HoleCandidate>* found);

private:
    void computeMeans(const cv::Mat& map, int size, cv::Mat* means);
    /// In some columns only; elsewhere it is 0.
    void computeContrast(const cv::Mat& map, double radius, const cv::Range& columns);

    cv::Mat m_mean;
    cv::Mat m_fine;
    cv::Mat m_contrast;
    std::vector<uint16_t> m_sums; ///< of columns
    std::vector<uchar> m_rows;
};

} // namespace finder
