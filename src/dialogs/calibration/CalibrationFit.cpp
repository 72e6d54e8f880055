#include "dialogs/calibration/CalibrationFit.h"

#include <QLineF>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr double largestResidual = 0.02;
}

namespace FieldNumber {

double value(const QString& text, bool* isNumber)
{
    bool good = false;
    const double number = text.toDouble(&good);
    good = good && std::isfinite(number);
    if (isNumber)
        *isNumber = good;
    return good ? number : 0.0;
}

QString text(double value)
{
    return QString::number(value, 'g', 6);
}

double kept(const QString& text, double stored)
{
    return text == FieldNumber::text(stored) ? stored : value(text);
}

int truncated(double coordinate)
{
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(std::max(coordinate, -most), most));
}

} // namespace FieldNumber

double pixelDistance(const QPoint& a, const QPoint& b)
{
    const double dx = a.x() - b.x();
    const double dy = a.y() - b.y();
    return std::sqrt(dx * dx + dy * dy);
}

double scaleOf(double pixels, double millimetres)
{
    return millimetres * 1.0 / (pixels > 0 ? pixels : millimetres);
}

AffineMap solveAffine(const std::array<QPoint, 4>& pixels, const std::array<QPointF, 4>& real)
{
    const auto narrowed = [](const QPointF& point) {
        return cv::Point2f(static_cast<float>(point.x()), static_cast<float>(point.y()));
    };
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

double relativeResidual(const FourPointCalibration& calibration)
{
    const std::array<QPointF, 4>& real = calibration.realPoints;
    double longest = 0;
    for (const QPointF& a : real) {
        for (const QPointF& b : real)
            longest = std::max(longest, QLineF(a, b).length());
    }
    const QPointF mapped = Calibration::fourPoint(calibration.map).toMachine(calibration.pixelPoints[3]);
    const double miss = QLineF(mapped, real[3]).length();
    return miss > 0 ? miss / longest : 0;
}

QString fourPointDoubt(const StationConfig& config)
{
    const QString problem = config.fourPointCalibration().problem();
    if (!problem.isEmpty() || !(relativeResidual(config.fourPoint) > largestResidual))
        return problem;
    const FourPointCalibration& own = config.fourPoint;
    const QPointF residual = Calibration::fourPoint(own.map).toMachine(own.pixelPoints[3]) - own.realPoints[3];
    return QCoreApplication::translate("CalibrationFit", "P4 残差过大：X %1 mm，Y %2 mm")
        .arg(residual.x(), 0, 'f', 3)
        .arg(residual.y(), 0, 'f', 3);
}

bool nearlyCollinear(const QPointF& a, const QPointF& b, const QPointF& c)
{
    const QPointF ab = b - a;
    const QPointF ac = c - a;
    const double doubleArea = std::abs(ab.x() * ac.y() - ab.y() * ac.x());
    const double longest = std::max({QLineF(a, b).length(), QLineF(a, c).length(), QLineF(b, c).length()});
    return !(doubleArea > 0.01 * longest * longest);
}
