#pragma once

#include "HoleCandidates.h"
#include "Network.h"

#include <array>
#include <vector>

namespace finder {

class Pyramid;
struct GrayLevels;

/// What a place is rather than a drilled hole.
enum class Lookalike {
    Blot,   ///< ragged outline: dirt, rust, a drop
    Flat,   ///< round, but nothing deep: a mark, a dot, a rivet
    Letter, ///< a letter or a digit
    Edge,   ///< a slot, a seam, the edge of an opening or of a shadow
    count
};

/// What the judge sees at one place.
struct Judgement
{
    cv::Point2d center;     ///< of the mouth, image pixels, right to about a twentieth of its radius
    double radius = 0;      ///< of the mouth, the bore's upper edge, pixels
    double outerRadius = 0; ///< of the chamfer's or counterbore's outer edge; about the mouth's where it is plain
    double evidence = 0;    ///< logarithm of the odds that it is a drilled hole, from its picture alone
    Lookalike lookalike = Lookalike::Blot; ///< what it would be if it is none
};

/// The three pictures of a place as the network reads them, one after the other: near and wide view against the wide
/// view's mean and spread, and the near view against black and bright of the whole image; of square roots of gray
/// values. `pictures` takes 3 * HoleView::places values.
void takePictures(Pyramid& image, const cv::Point2d& hub, const GrayLevels& levels, const cv::Point2d& center,
                  double radius, float* pictures);

/// Judges places by their pictures: a convolution network looks at each place twice, near (2.4 radii each way) and wide
/// (7 radii), turned so that the hub lies to the left; gray values count against the wide view's spread, and the near
/// view also against black and bright of the whole image. One instance per thread.
class HoleJudge
{
public:
    /// Judges each candidate, in their order, and those that may well be holes a second time where the first look found
    /// them. `hub` is the hub's centre, `levels` those of the whole image.
    std::vector<Judgement> judge(Pyramid& image, const cv::Point2d& hub, const GrayLevels& levels,
                                 const std::vector<HoleCandidate>& candidates);

private:
    std::vector<Judgement> look(Pyramid& image, const cv::Point2d& hub, const GrayLevels& levels,
                                const std::vector<Judgement>& places);

    Network m_network{QStringLiteral("judge")};
    cv::Mat m_input;
};

} // namespace finder
