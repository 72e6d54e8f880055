#include "Rivals.h"

#include "finder/Geometry.h"

#include <opencv2/imgproc.hpp>

namespace {

using finder::HoleModel;
using finder::Range;

struct Hub
{
    cv::Point2d center;
    double radius = 0;
};

Hub houghHub(const cv::Mat& gray, const HoleModel& model)
{
    constexpr int factor = 8;
    cv::Mat small;
    cv::resize(gray, small, {}, 1.0 / factor, 1.0 / factor, cv::INTER_AREA);
    const Range rim = model.rimRange(gray.rows);
    std::vector<cv::Vec3f> circles;
    cv::HoughCircles(small, circles, cv::HOUGH_GRADIENT, 1, small.rows, 60, 20, cvFloor(rim.low / factor),
                     cvCeil(rim.high / factor));
    if (circles.empty())
        return {};
    const cv::Vec3f& best = circles.front();
    return {{(best[0] + 0.5) * factor - 0.5, (best[1] + 0.5) * factor - 0.5}, best[2] * factor};
}

cv::Rect boxAround(const cv::Point2d& point, double reach, const cv::Mat& image)
{
    const cv::Rect box(cvFloor(point.x - reach), cvFloor(point.y - reach), cvCeil(2 * reach) + 1,
                       cvCeil(2 * reach) + 1);
    return box & cv::Rect(0, 0, image.cols, image.rows);
}

Answer answerAt(const Hub& hub, const cv::Point2d& hole)
{
    return {true, hole, finder::screenAngle(hub.center, hole)};
}

/// The square of `side` pixels around the middle of a picture that was turned by some degrees and scaled.
cv::Mat turned(const cv::Mat& picture, double degrees, double scale, int side)
{
    cv::Mat map = cv::getRotationMatrix2D(
        {static_cast<float>(picture.cols - 1) / 2, static_cast<float>(picture.rows - 1) / 2}, degrees, scale);
    map.at<double>(0, 2) += 0.5 * (side - picture.cols);
    map.at<double>(1, 2) += 0.5 * (side - picture.rows);
    cv::Mat result;
    cv::warpAffine(picture, result, map, {side, side}, cv::INTER_AREA, cv::BORDER_REPLICATE);
    return result;
}

struct Match
{
    double score = 0;
    cv::Point2d middle;
};

Match bestMatch(const cv::Mat& image, const cv::Rect& within, const cv::Mat& picture)
{
    if (within.width < picture.cols || within.height < picture.rows)
        return {};
    cv::Mat scores;
    cv::matchTemplate(image(within), picture, scores, cv::TM_CCOEFF_NORMED);
    Match match;
    cv::Point at;
    cv::minMaxLoc(scores, nullptr, &match.score, nullptr, &at);
    const auto offset = [&](int x, int y) {
        const auto value = [&](int k) { return static_cast<double>(scores.at<float>(at.y + k * y, at.x + k * x)); };
        const bool inner = at.x > 0 && at.y > 0 && at.x + 1 < scores.cols && at.y + 1 < scores.rows;
        const double bend = inner ? value(-1) - 2 * value(0) + value(1) : 0;
        return bend < 0 ? 0.5 * (value(-1) - value(1)) / bend : 0;
    };
    match.middle = cv::Point2d(within.x + at.x + offset(1, 0) + 0.5 * (picture.cols - 1),
                               within.y + at.y + offset(0, 1) + 0.5 * (picture.rows - 1));
    return match;
}

} // namespace

Answer HoughRival::find(const cv::Mat& gray, const HoleModel& model) const
{
    const Hub hub = houghHub(gray, model);
    if (hub.radius <= 0)
        return {};
    const Range ring = model.ringRange(hub.radius);
    const Range hole = model.holeRange(hub.radius);
    const cv::Rect box = boxAround(hub.center, ring.high + 2 * hole.high, gray);
    cv::Mat smooth;
    cv::GaussianBlur(gray(box), smooth, {5, 5}, 1.2);
    std::vector<cv::Vec3f> circles;
    cv::HoughCircles(smooth, circles, cv::HOUGH_GRADIENT, 1, 2 * hole.high, 80, 12, cvFloor(hole.low),
                     cvCeil(hole.high));
    for (const cv::Vec3f& circle : circles) { // the best supported first
        const cv::Point2d center(circle[0] + box.x, circle[1] + box.y);
        if (std::abs(cv::norm(center - hub.center) - ring.middle()) < 0.02 * ring.middle())
            return answerAt(hub, center);
    }
    return {};
}

void TemplateRival::teach(const std::string& design, const cv::Mat& gray, const Truth& truth)
{
    const cv::Rect box = boxAround(truth.center, 2.4 * truth.radius, gray);
    m_holes.emplace(design, Hole{gray(box).clone(), truth.radius, truth.angle});
}

Answer TemplateRival::find(const std::string& design, const cv::Mat& gray, const HoleModel& model) const
{
    const Hole& hole = m_holes.at(design);
    const Hub hub = houghHub(gray, model);
    if (hub.radius <= 0)
        return {};
    constexpr int factor = 4;
    constexpr int directions = 36;
    constexpr double leastScore = 0.6;
    cv::Mat small;
    cv::resize(gray, small, {}, 1.0 / factor, 1.0 / factor, cv::INTER_AREA);
    const double ring = model.ringRange(hub.radius).middle();
    const double expected = model.holeRange(hub.radius).middle();
    const double scale = expected / hole.radius;
    const double half = CV_PI * ring / directions + 1.5 * expected;
    Match best;
    double bestTurn = 0;
    for (int i = 0; i < directions; ++i) {
        const double angle = 360.0 * i / directions;
        const cv::Point2d at =
            hub.center + ring * cv::Point2d(std::cos(angle * CV_PI / 180), -std::sin(angle * CV_PI / 180));
        const cv::Mat picture = turned(hole.picture, angle - hole.angle, scale / factor, cvCeil(3 * expected / factor));
        const Match match = bestMatch(small, boxAround(at / factor, half / factor, small), picture);
        if (match.score > best.score) {
            best = match;
            bestTurn = angle - hole.angle;
        }
    }
    if (best.score < leastScore)
        return {};
    const cv::Point2d near = factor * (best.middle + cv::Point2d(0.5, 0.5)) - cv::Point2d(0.5, 0.5);
    const cv::Mat picture = turned(hole.picture, bestTurn, scale, cvCeil(3 * expected));
    return answerAt(hub, bestMatch(gray, boxAround(near, 1.5 * expected + 2 * factor, gray), picture).middle);
}
