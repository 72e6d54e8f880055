#include "ExampleMatch.h"

#include "HoleExamples.h"
#include "HoleJudge.h"
#include "HoleView.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace finder {

namespace {

// Measured as correlation with the best of three pictures: wheels of one make under one light 0.97 in the median,
// wheels that differ in everything but their design 0.67, another design's hole 0.7 to 0.8, no hole 0.25 (0.65 at 95
// %).
constexpr double neutral = 0.5;
constexpr double ofLikeness = 4;
constexpr double mostFor = 2;
constexpr double mostAgainst = -1.5;
// A rejected place counts only where it is clearly meant, and more like this place than the model's holes.
constexpr double rejectedFrom = 0.7;
constexpr double ofRejected = -5;

/// Mean 0 and length 1, so that a product of two is their correlation; empty where there is nothing to see.
cv::Mat normalised(cv::Mat picture)
{
    cv::Scalar mean, spread;
    cv::meanStdDev(picture, mean, spread);
    const double length = spread[0] * HoleView::side;
    if (length < 1)
        return {};
    return (picture - mean[0]) / length;
}

std::vector<cv::Mat> picturesOf(const QVector<HoleExample>& examples)
{
    std::vector<cv::Mat> pictures;
    for (const HoleExample& example : examples) {
        cv::Mat small, real;
        cv::resize(example.patch, small, {HoleView::side, HoleView::side}, 0, 0, cv::INTER_AREA);
        small.convertTo(real, CV_32F);
        const cv::Mat picture = normalised(real);
        if (!picture.empty())
            pictures.push_back(picture);
    }
    return pictures;
}

/// The greatest correlation with any of the pictures; -1 when there are none.
double likeness(const cv::Mat& picture, const std::vector<cv::Mat>& pictures)
{
    double most = -1;
    for (const cv::Mat& other : pictures)
        most = std::max(most, picture.dot(other));
    return most;
}

} // namespace

ExampleMatch::ExampleMatch(const HoleExamples& examples)
    : m_holes(picturesOf(examples.holes))
    , m_rejected(picturesOf(examples.rejected))
{
}

double ExampleMatch::odds(Pyramid& image, const cv::Point2d& hub, const Judgement& place) const
{
    const cv::Point2d arm = place.center - hub;
    cv::Mat seen(HoleView::side, HoleView::side, CV_32F);
    HoleView{place.center, arm / std::max(1e-6, cv::norm(arm)), HoleExample::patchReach * place.radius}.sample(
        image, seen.ptr<float>());
    const cv::Mat picture = normalised(seen);
    if (picture.empty())
        return mostAgainst;
    const double hole = likeness(picture, m_holes);
    const double rejected = likeness(picture, m_rejected);
    double odds = m_holes.empty() ? 0 : std::clamp(ofLikeness * (hole - neutral), mostAgainst, mostFor);
    if (rejected > rejectedFrom && rejected > hole)
        odds += ofRejected * (rejected - rejectedFrom) / (1 - rejectedFrom);
    return odds;
}

} // namespace finder
