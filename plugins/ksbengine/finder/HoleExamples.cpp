#include "HoleExamples.h"

#include "HoleModel.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <limits>

namespace finder {

namespace {

bool isPatch(const cv::Mat& patch)
{
    return patch.type() == CV_8UC1 && patch.rows == HoleExample::patchSide && patch.cols == HoleExample::patchSide;
}

/// A part of an image of which each pixel is the mean of `factor` x `factor` pixels of that image.
struct Level
{
    cv::Mat gray;
    cv::Point2d origin; ///< of the part, in pixels of the image
    double factor = 1;

    cv::Point2d placeOf(const cv::Point2d& point) const
    {
        return {(point.x - origin.x + 0.5) / factor - 0.5, (point.y - origin.y + 0.5) / factor - 0.5};
    }
};

/// Blocks are counted from the image's corner, so that a place has the same pixels however it is cut out. What remains
/// beyond the last whole block is left out.
Level levelAround(const cv::Mat& gray, const cv::Point2d& middle, double reach, double step)
{
    const int wanted = 1 << std::clamp(static_cast<int>(std::floor(std::log2(step))), 0, 10);
    const int factor = std::min({wanted, gray.cols, gray.rows});
    const auto span = [&](double at, int size) {
        const int blocks = size / factor;
        const int first = std::clamp(cvFloor((at - reach) / factor) - 1, 0, blocks - 1);
        const int last = std::clamp(cvFloor((at + reach) / factor) + 1, first, blocks - 1);
        return cv::Range(first * factor, (last + 1) * factor);
    };
    const cv::Range columns = span(middle.x, gray.cols);
    const cv::Range rows = span(middle.y, gray.rows);
    Level level;
    level.origin = {static_cast<double>(columns.start), static_cast<double>(rows.start)};
    level.factor = factor;
    level.gray = gray(rows, columns);
    if (factor > 1)
        cv::resize(level.gray, level.gray, {columns.size() / factor, rows.size() / factor}, 0, 0, cv::INTER_AREA);
    return level;
}

cv::Mat samplePatch(const cv::Mat& gray, const cv::Point2d& hole, const cv::Point2d& outward, double radius)
{
    constexpr int side = HoleExample::patchSide;
    const double step = 2 * HoleExample::patchReach * radius / side;
    const Level level = levelAround(gray, hole, std::sqrt(2.0) * HoleExample::patchReach * radius, step);
    const cv::Point2d middle = level.placeOf(hole);
    const cv::Point2d x = outward * (step / level.factor);
    const cv::Point2d y(-x.y, x.x);
    const cv::Point2d corner = middle - 0.5 * (side - 1) * (x + y);
    const cv::Matx23d toLevel(x.x, y.x, corner.x, x.y, y.y, corner.y);
    cv::Mat patch;
    cv::warpAffine(level.gray, patch, toLevel, {side, side}, cv::INTER_LINEAR | cv::WARP_INVERSE_MAP,
                   cv::BORDER_REPLICATE);
    return patch;
}

cv::Mat normalised(const cv::Mat& patch)
{
    cv::Scalar mean;
    cv::Scalar deviation;
    cv::meanStdDev(patch, mean, deviation);
    const double scale = deviation[0] > 0 ? 1 / deviation[0] : 0;
    cv::Mat values;
    patch.convertTo(values, CV_32F, scale, -mean[0] * scale);
    return values;
}

double distanceOf(const cv::Mat& normalisedOne, const cv::Mat& normalisedOther)
{
    return cv::norm(normalisedOne, normalisedOther, cv::NORM_L2SQR) /
           (2.0 * static_cast<double>(normalisedOne.total()));
}

using Distances = std::vector<std::vector<double>>;

Distances distancesBetween(const QVector<HoleExample>& list)
{
    std::vector<cv::Mat> values;
    values.reserve(static_cast<size_t>(list.size()));
    for (const HoleExample& example : list)
        values.push_back(normalised(example.patch));
    Distances distances(values.size(), std::vector<double>(values.size(), 0));
    for (size_t i = 0; i < values.size(); ++i) {
        for (size_t j = 0; j < i; ++j)
            distances[i][j] = distances[j][i] = distanceOf(values[i], values[j]);
    }
    return distances;
}

double leastWithout(const Distances& distances, size_t left)
{
    double least = std::numeric_limits<double>::max();
    for (size_t i = 0; i < distances.size(); ++i) {
        for (size_t j = 0; j < i; ++j) {
            if (i != left && j != left)
                least = std::min(least, distances[i][j]);
        }
    }
    return least;
}

/// Which one to drop, never the first, so that the two most alike of the others differ the most.
int mostRedundant(const QVector<HoleExample>& list)
{
    const Distances distances = distancesBetween(list);
    size_t best = 1;
    double most = -1;
    for (size_t i = 1; i < distances.size(); ++i) {
        const double least = leastWithout(distances, i);
        if (least > most) {
            most = least;
            best = i;
        }
    }
    return static_cast<int>(best);
}

struct Size
{
    double median;
    double tolerance; ///< percent
};

/// `limits` are those of the tolerance.
Size sizeFrom(const QVector<HoleExample>& holes, double HoleExample::*member, const Range& limits)
{
    QVector<double> values;
    for (const HoleExample& hole : holes)
        values.append(hole.*member);
    std::sort(values.begin(), values.end());
    const int count = values.size();
    const double median = (values[(count - 1) / 2] + values[count / 2]) / 2;
    const double deviation = std::max(median - values.first(), values.last() - median) / median;
    const double margin = 1 + 3.0 / count;
    // Rounded to thousandths first: 1.5 % shall not become 1.6 % by the last digit of a double.
    const double percent = std::round(1e3 * 100 * margin * deviation) / 1e3;
    return {median, std::clamp(std::ceil(10 * percent) / 10, limits.low, limits.high)};
}

double hundredths(double value)
{
    return std::round(100 * value) / 100;
}

} // namespace

HoleExample makeExample(const cv::Mat& gray, const Outline& hub, const cv::Point2d& hole, double radius)
{
    HoleExample example;
    const cv::Point2d arm = hole - hub.center;
    const double distance = cv::norm(arm);
    const double rim = hub.radiusAt(std::atan2(arm.y, arm.x));
    const bool inside = cv::Rect2d(-0.5, -0.5, gray.cols, gray.rows).contains(hole);
    if (gray.type() != CV_8UC1 || !inside || !(radius > 0) || !(rim > 0) || !(distance > 0))
        return example;
    example.patch = samplePatch(gray, hole, arm / distance, radius);
    example.ringShare = distance / rim;
    example.holeShare = radius / hub.radius;
    example.rimRadius = hub.radius;
    example.ringRadius = example.ringShare * hub.radius;
    example.holeRadius = radius;
    return example;
}

double distanceBetween(const cv::Mat& patch, const cv::Mat& other)
{
    return distanceOf(normalised(patch), normalised(other));
}

bool HoleExamples::add(QVector<HoleExample>* list, const HoleExample& example)
{
    if (!isPatch(example.patch))
        return false;
    for (HoleExample& known : *list) {
        if (distanceBetween(known.patch, example.patch) < same) {
            known = example;
            return true;
        }
    }
    list->append(example);
    if (list->size() > most)
        list->remove(mostRedundant(*list));
    return true;
}

bool proposeSizes(const QVector<HoleExample>& holes, HoleModel* model)
{
    if (holes.size() < fewestForSizes)
        return false;
    const Size rim = sizeFrom(holes, &HoleExample::rimRadius, {5, 50});
    const Size ring = sizeFrom(holes, &HoleExample::ringShare, {1.5, 50});
    const Size hole = sizeFrom(holes, &HoleExample::holeShare, {12, 60});
    model->rimRadius = hundredths(rim.median);
    model->rimTolerance = rim.tolerance;
    model->ringRadius = hundredths(ring.median * rim.median);
    model->ringTolerance = ring.tolerance;
    model->holeRadius = hundredths(hole.median * rim.median);
    model->holeTolerance = hole.tolerance;
    return true;
}

} // namespace finder
