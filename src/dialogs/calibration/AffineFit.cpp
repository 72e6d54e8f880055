#include "dialogs/calibration/AffineFit.h"

#include <QLineF>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace {

cv::Point2f narrowed(const QPointF& point)
{
    return {static_cast<float>(point.x()), static_cast<float>(point.y())};
}

} // namespace

AffineMap solveAffine(const std::array<QPoint, 4>& pixels, const std::array<QPointF, 4>& real)
{
    cv::Point2f from[4];
    cv::Point2f to[4];
    for (int i = 0; i < 4; ++i) {
        from[i] = narrowed(pixels[i]);
        to[i] = narrowed(real[i]);
    }
    const cv::Mat solved = cv::getAffineTransform(from, to);
    AffineMap map;
    std::copy_n(solved.ptr<double>(), map.size(), map.begin());
    return map;
}

QTransform toTransform(const AffineMap& map)
{
    return {map[0], map[3], map[1], map[4], map[2], map[5]};
}

bool nearlyCollinear(const QPointF& a, const QPointF& b, const QPointF& c)
{
    const QPointF ab = b - a;
    const QPointF ac = c - a;
    const double doubleArea = std::abs(ab.x() * ac.y() - ab.y() * ac.x());
    const double longest = std::max({QLineF(a, b).length(), QLineF(a, c).length(), QLineF(b, c).length()});
    return !(doubleArea > 0.01 * longest * longest);
}
