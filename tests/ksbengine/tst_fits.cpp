#include "finder/Edges.h"
#include "finder/Robust.h"
#include "finder/rim/ConcentricFit.h"
#include "support/Table.h"

#include <QtTest>

#include <opencv2/core.hpp>

namespace {

constexpr double degree = CV_PI / 180;

/// An ellipse about `center` whose first half axis points to `turn`.
struct Ellipse
{
    cv::Point2d center;
    double a;
    double b;
    double turn;

    /// How far a point inside of it lies from it in a direction; solves the quadratic equation of the ray.
    double distanceFrom(const cv::Point2d& from, double angle) const
    {
        const auto unit = [this](const cv::Point2d& v) {
            return cv::Point2d((v.x * std::cos(turn) + v.y * std::sin(turn)) / a,
                               (v.y * std::cos(turn) - v.x * std::sin(turn)) / b);
        };
        const cv::Point2d p = unit(from - center);
        const cv::Point2d d = unit({std::cos(angle), std::sin(angle)});
        const double half = p.dot(d) / d.dot(d);
        return -half + std::sqrt(half * half - (p.dot(p) - 1) / d.dot(d));
    }
};

/// Edges of an ellipse on rays from (0, 0), within an arc that begins at 20 degrees.
std::vector<finder::EdgePoint> edgesOf(const Ellipse& ellipse, int rays, double arc, double strength = 10)
{
    std::vector<finder::EdgePoint> points;
    for (int i = 0; i < rays; ++i) {
        const double angle = 20 * degree + 2 * CV_PI * i / rays;
        if (360.0 * i / rays <= arc)
            points.push_back({angle, ellipse.distanceFrom({0, 0}, angle), strength, 0, false});
    }
    return points;
}

/// A ray over a blurred step of 100 gray levels at `edge`, upwards or downwards.
finder::Ray rayOverStep(double edge, double blur, bool upwards)
{
    finder::Ray ray;
    ray.start = 50;
    ray.step = 0.5;
    for (int i = 0; i < 80; ++i) {
        const double behind = ray.start + i * ray.step - edge;
        ray.values.push_back(float(80 + (upwards ? 50 : -50) * std::erf(behind / (blur * std::sqrt(2.0)))));
    }
    return ray;
}

struct OutlineCase
{
    cv::Point2d shift;
    cv::Point2d axes;
    double turn; // degrees
    double arc;  // degrees
    double outliers;
    double outliersOff; // pixels
    double centerTolerance;
    double tiltTolerance;
};

struct ConcentricCase
{
    cv::Point2d shift;
    double tilt;    // c2 of the circle of 100 pixels
    cv::Vec3d arcs; // degrees, of the circles of 80, 92 and 100 pixels
    int clutter;    // edges off all circles
};

} // namespace

Q_DECLARE_METATYPE(OutlineCase)
Q_DECLARE_METATYPE(ConcentricCase)
Q_DECLARE_METATYPE(finder::EdgeKind)

/// The finder's fits against shapes whose answer is known in closed form.
class FitsTest : public QObject
{
    Q_OBJECT

private slots:
    void outlineIsFitted_data()
    {
        Table::of<OutlineCase>({
            {"circle beside the guess", {{0.6, -0.3}, {100, 100}, 0.0, 360.0, 0.0, 0.0, 1e-4, 2e-3}},
            {"tilted circle", {{0.2, 0.1}, {700, 693}, 30.0, 360.0, 0.0, 0.0, 2e-3, 0.03}},
            {"half circle", {{0.3, 0.2}, {200, 200}, 0.0, 180.0, 0.0, 0.0, 2e-3, 2e-3}},
            {"two thirds of a tilted circle", {{0.3, 0.2}, {200, 198}, 70.0, 240.0, 0.0, 0.0, 0.03, 0.03}},
            {"an arc of the shadow's edge", {{0.4, -0.2}, {200, 200}, 0.0, 360.0, 0.35, 6.0, 2e-3, 2e-3}},
            {"dents", {{0.4, -0.2}, {200, 199}, 10.0, 360.0, 0.2, -4.0, 2e-3, 0.02}},
        });
    }
    void outlineIsFitted()
    {
        const auto [shift, axes, turn, arc, share, off, nearCenter, nearTilt] = std::get<0>(Table::row<OutlineCase>());
        const Ellipse ellipse{shift, axes.x, axes.y, turn * degree};
        std::vector<finder::EdgePoint> points = edgesOf(ellipse, 240, arc);
        const auto outliers = static_cast<size_t>(share * static_cast<double>(points.size()));
        for (size_t i = 0; i < outliers; ++i)
            points[i].radius += off;
        const cv::Point2d guess(300, 200);
        const finder::OutlineFit fit = finder::fitOutline(guess, points, {});
        QVERIFY(fit.valid);
        QVERIFY2(cv::norm(fit.outline.center - guess - shift) < nearCenter,
                 qPrintable(QString::number(cv::norm(fit.outline.center - guess - shift))));
        const double mean = (axes.x + axes.y) / 2;
        const double half = (axes.x - axes.y) / 2;
        QVERIFY(std::abs(fit.outline.radius - mean) < nearTilt);
        QVERIFY(std::abs(fit.outline.c2 - half * std::cos(2 * ellipse.turn)) < nearTilt);
        QVERIFY(std::abs(fit.outline.s2 - half * std::sin(2 * ellipse.turn)) < nearTilt);
        for (size_t i = 0; i < points.size(); ++i)
            QCOMPARE(points[i].used, i >= outliers);
    }

    void withoutPointsThereIsNoFitAndWithoutAStepNoEdge()
    {
        std::vector<finder::EdgePoint> few = edgesOf({{}, 50, 50, 0}, 9, 360);
        std::vector<finder::EdgePoint> none;
        QVERIFY(!finder::fitOutline({}, few, {}).valid && !finder::fitOutline({}, none, {}).valid);
        QVERIFY(!finder::fitConcentric({}, none, 100, {}).valid);
        finder::Ray ray;
        for (const size_t length : {60, 0}) {
            ray.values.assign(length, 117.0F);
            finder::appendEdges(ray, finder::EdgeKind::Either, {2, 5}, &none);
            QVERIFY(none.empty());
            QCOMPARE(finder::strongestEdge(ray, finder::EdgeKind::Either, {2, 5}).strength, 0.0);
        }
        std::vector<finder::EdgePoint> points = edgesOf({{}, 50, 50, 0}, 360, 180);
        for (size_t i = 0; i < points.size(); ++i)
            points[i].used = i % 2 > 0; // every sector of the half has one
        QVERIFY(std::abs(finder::coverage(points, 60) - 0.5) < 0.03);
    }

    void steepEdgesCountMoreWhereAsked()
    {
        // A third of the points is faint and one pixel off, too little for an outlier.
        std::vector<finder::EdgePoint> points = edgesOf({{}, 200, 200, 0}, 240, 360);
        for (size_t i = 0; i < points.size(); i += 3) {
            points[i].radius += 1;
            points[i].strength = 1;
        }
        const auto radius = [&](bool steepCountsMore) {
            return finder::fitOutline({}, points, {true, 0.02, 3, steepCountsMore}).outline.radius;
        };
        QVERIFY(std::abs(radius(true) - 200) < 0.01);
        QVERIFY(radius(false) > 200.1);
    }

    void concentricCirclesShareACenter_data()
    {
        Table::of<ConcentricCase>({
            {"shifted and tilted", {{-2.4, 1.7}, 0.8, {360, 360, 360}, 0}},
            {"lit on one side", {{1.6, 1.2}, 0.0, {200, 150, 360}, 0}},
            {"no more than arcs", {{1.6, -1.2}, 0.0, {180, 220, 240}, 0}},
            {"lettering and shadows", {{2.2, -3.1}, 0.0, {360, 300, 360}, 250}},
        });
    }
    void concentricCirclesShareACenter()
    {
        const auto [shift, tilt, arcs, clutter] = std::get<0>(Table::row<ConcentricCase>());
        constexpr int rays = 200;
        const cv::Vec3d radii(80, 92, 100);
        std::vector<finder::EdgePoint> points;
        for (int k = 0; k < 3; ++k) {
            const double half = tilt * radii[k] / 100;
            const Ellipse ellipse{shift, radii[k] + half, radii[k] - half, 0};
            for (const finder::EdgePoint& point : edgesOf(ellipse, rays, arcs[k]))
                points.push_back(point);
        }
        const size_t good = points.size();
        cv::RNG random(99);
        for (int i = 0; i < clutter; ++i)
            points.push_back({random.uniform(0.0, 2 * CV_PI), random.uniform(60.0, 110.0), 6, 0, false});
        const cv::Point2d guess(400, 500);
        const finder::ConcentricFit fit = finder::fitConcentric(guess, points, rays, {6, 1, 1, 0.01});
        QVERIFY(fit.valid);
        QVERIFY2(cv::norm(fit.center - guess - shift) < 0.1,
                 qPrintable(QString::number(cv::norm(fit.center - guess - shift))));
        QVERIFY(std::abs(fit.c2 - tilt) < 0.1);
        QVERIFY(std::abs(fit.lead - 100) < 0.15);
        for (int k = 0; k < 3; ++k) {
            const bool found =
                std::any_of(fit.circles.begin(), fit.circles.end(), [&](const finder::ConcentricCircle& circle) {
                    return std::abs(circle.radius - radii[k]) < 0.3 && circle.support > 0.95 * arcs[k] / 360;
                });
            QVERIFY(found);
        }
        for (size_t i = 0; i < good; ++i)
            QVERIFY(points[i].used);
    }

    void edgesLieWhereTheStepIs_data()
    {
        using finder::EdgeKind;
        Table::of<double, double, bool, EdgeKind, int, bool>({
            {"up", 68.3, 1.5, true, EdgeKind::BrightOutside, 0, true},
            {"down", 71.9, 1.5, false, EdgeKind::DarkOutside, 0, true},
            {"down, looked for as up", 71.9, 1.5, false, EdgeKind::BrightOutside, 0, false},
            {"against its surroundings", 70.15, 1.0, true, EdgeKind::Either, 10, true},
            {"blurred", 70.4, 3.0, false, EdgeKind::Either, 10, true},
        });
    }
    void edgesLieWhereTheStepIs()
    {
        const auto [edge, blur, upwards, kind, apart, seen] =
            Table::row<double, double, bool, finder::EdgeKind, int, bool>();
        const finder::Ray ray = rayOverStep(edge, blur, upwards);
        const finder::EdgeFilter filter{2, apart};
        const finder::EdgePoint strongest = finder::strongestEdge(ray, kind, filter);
        QCOMPARE(strongest.strength > 0, seen);
        std::vector<finder::EdgePoint> all;
        finder::appendEdges(ray, kind, filter, &all);
        QCOMPARE(int(all.size()), int(seen));
        if (!seen)
            return;
        QVERIFY2(std::abs(strongest.radius - edge) < 0.05, qPrintable(QString::number(strongest.radius)));
        QCOMPARE(all.front().radius, strongest.radius);
    }

    void outliersDoNotMoveRobustStatistics()
    {
        cv::RNG random(5);
        std::vector<double> magnitudes;
        std::vector<float> values;
        for (int i = 0; i < 4000; ++i) {
            const double value = i % 10 == 0 ? 1e6 : random.gaussian(2.0);
            magnitudes.push_back(std::abs(value));
            values.push_back(float(i % 10 == 0 ? 50 : value));
        }
        // A tenth of outliers moves the median of the magnitudes to the 0.556 quantile, 0.765 sigma.
        QVERIFY(std::abs(finder::sigmaOf(magnitudes) - 2.0 * 1.4826 * 0.765) < 0.15);
        const double magnitude = finder::winsorisedMagnitude(values.data(), int(values.size()));
        QVERIFY(magnitude > 1.2 && magnitude < 4.5); // the plain mean is 6.4
        std::vector<int> numbers{9, 1, 8, 2, 7, 3, 6, 4, 5};
        QCOMPARE(finder::median(numbers), 5);
        QCOMPARE(numbers.front(), 9);
        QCOMPARE(finder::quantile(numbers, 0.25), 3);
        QCOMPARE(finder::quantile(numbers, 1), 9);
    }
};

QTEST_APPLESS_MAIN(FitsTest)
#include "tst_fits.moc"
