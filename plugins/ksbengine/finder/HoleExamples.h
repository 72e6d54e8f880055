#pragma once

#include "Geometry.h"

#include <QString>
#include <QVector>

namespace finder {

struct HoleModel;

/// One remembered place of a wheel: the picture of the surroundings of a hole, or of what was wrongly taken for one,
/// with the sizes that were measured there.
struct HoleExample
{
    static constexpr int patchSide = 64;    ///< pixels
    static constexpr double patchReach = 4; ///< mouth radii from the middle of the patch to its edge

    /// 8-bit gray, patchSide x patchSide, the mouth in the middle. The x axis points away from the hub, the y axis 90
    /// degrees further in the image's own sense, so that two patches of one kind of wheel look alike at any turn.
    cv::Mat patch;
    double ringShare = 0;  ///< distance from the hub as a share of the rim's radius, before tilt
    double holeShare = 0;  ///< radius of the mouth as a share of the rim's radius
    double rimRadius = 0;  ///< pixels, as found
    double ringRadius = 0; ///< pixels, as found, before tilt
    double holeRadius = 0; ///< pixels, as found
    QString source;        ///< file name of the image, for people; may be empty
};

/// The patch and the sizes of the place `hole` of an image of 8-bit gray: pixel (i, j) of the patch is bilinear in the
/// level of the image (k times the mean of 2 x 2 pixels) whose pixels are the largest that are no larger than a step of
/// the patch, 2 * patchReach * radius / patchSide. Beyond the image its outermost pixels go on. The patch is empty when
/// `gray` is no such image, `hole` does not lie in it or a size is not positive. Any thread.
HoleExample makeExample(const cv::Mat& gray, const Outline& hub, const cv::Point2d& hole, double radius);

/// How different two patches look: half of the mean squared difference after each was brought to mean 0 and standard
/// deviation 1, which is 1 - their correlation. 0 (the same) to 2.
double distanceBetween(const cv::Mat& patch, const cv::Mat& other);

/// What a model has been shown: its holes, and what was wrongly taken for its hole; each oldest first.
struct HoleExamples
{
    static constexpr int most = 20;      ///< of each list
    static constexpr double same = 1e-3; ///< distance below which a patch shows the same picture of the same place

    QVector<HoleExample> holes;
    QVector<HoleExample> rejected;

    bool isEmpty() const { return holes.isEmpty() && rejected.isEmpty(); }

    /// Adds an example to one of the lists. A second picture of the same place takes the first one's position. Of most
    /// + 1 examples the subset stays whose two most alike differ the most; where several are as good, the oldest goes.
    /// The first of a list always stays. False, and nothing changed, when the patch is not of the size above.
    static bool add(QVector<HoleExample>* list, const HoleExample& example);
};

constexpr int fewestForSizes = 3; ///< examples that sizes are proposed from

/// Sizes and tolerances as n confirmed holes suggest them. With R the median of the rim's radii, the ring is R times
/// the median of the examples' shares of the rim, the hole likewise. Each tolerance is (1 + 3 / n) times the largest
/// deviation from the median, in percent and rounded up to tenths: few examples have not seen the whole spread, so that
/// three are given twice of what they show and twenty a sixth more. It is at least 5 % of the rim, 1.5 % of the ring
/// and 12 % of the hole, since parts that were photographed on one day differ less than those of a year, and at most
/// what applyParameters() takes. False, and `model` as it was, with fewer than fewestForSizes examples.
bool proposeSizes(const QVector<HoleExample>& holes, HoleModel* model);

} // namespace finder
