#pragma once

#include <opencv2/core.hpp>

#include <vector>

namespace finder {

class Pyramid;
struct HoleExamples;
struct Judgement;

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
