#include "guided/vision/LensDistortion.h"

#include <opencv2/calib3d.hpp>

#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr int fewestPoints = 9;
constexpr double strongest = 0.5;
constexpr int rounds = 60; // of the golden section: more than a double's digits of the range

QPointF middleOf(const QSize& picture)
{
    return {0.5 * (picture.width() - 1), 0.5 * (picture.height() - 1)};
}

double halfDiagonal(const QSize& picture)
{
    return 0.5 * std::hypot(picture.width(), picture.height());
}

/// What the best perspective leaves of the pairs when the distortion is of that strength, millimetres.
double leftBy(double strength, const QVector<PointPair>& pairs, const QSize& picture)
{
    LensDistortion lens;
    lens.strength = strength;
    lens.picture = picture;
    std::vector<cv::Point2d> straight;
    std::vector<cv::Point2d> real;
    for (const PointPair& pair : pairs) {
        const QPointF point = lens.straight(pair.pixel);
        straight.emplace_back(point.x(), point.y());
        real.emplace_back(pair.real.x(), pair.real.y());
    }
    const cv::Mat map = cv::findHomography(straight, real, 0);
    if (map.empty())
        return std::numeric_limits<double>::max();
    std::vector<cv::Point2d> mapped;
    cv::perspectiveTransform(straight, mapped, map);
    double sum = 0;
    for (size_t i = 0; i < real.size(); ++i) {
        const cv::Point2d miss = mapped[i] - real[i];
        sum += miss.dot(miss);
    }
    return std::sqrt(sum / double(real.size()));
}

} // namespace

QPointF LensDistortion::straight(const QPointF& pixel) const
{
    const QPointF arm = pixel - middleOf(picture);
    const double share = std::hypot(arm.x(), arm.y()) / halfDiagonal(picture);
    return middleOf(picture) + arm * (1 + strength * share * share);
}

double LensDistortion::atCorner() const
{
    return std::abs(strength) * halfDiagonal(picture);
}

std::optional<LensDistortion> LensDistortion::estimate(const QVector<PointPair>& pairs, const QSize& picture)
{
    if (pairs.size() < fewestPoints || picture.isEmpty())
        return {};
    const double golden = 0.5 * (std::sqrt(5.0) - 1);
    double low = -strongest;
    double high = strongest;
    double inner = high - golden * (high - low);
    double outer = low + golden * (high - low);
    double atInner = leftBy(inner, pairs, picture);
    double atOuter = leftBy(outer, pairs, picture);
    for (int round = 0; round < rounds; ++round) {
        if (atInner < atOuter) {
            high = outer;
            outer = inner;
            atOuter = atInner;
            inner = high - golden * (high - low);
            atInner = leftBy(inner, pairs, picture);
        } else {
            low = inner;
            inner = outer;
            atInner = atOuter;
            outer = low + golden * (high - low);
            atOuter = leftBy(outer, pairs, picture);
        }
    }
    LensDistortion lens;
    lens.strength = 0.5 * (low + high);
    lens.picture = picture;
    lens.rmsWith = leftBy(lens.strength, pairs, picture);
    lens.rmsWithout = leftBy(0, pairs, picture);
    return lens;
}
