#include "finder/Edges.h"
#include "finder/OutlineFit.h"
#include "finder/Perspective.h"
#include "finder/Robust.h"
#include "finder/rim/ConcentricFit.h"
#include "support/Table.h"

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

using finder::Camera;
using finder::Slope;

constexpr double rimRadius = 220; // millimetres
constexpr double ringRadius = 195;

/// 1.5 m above the rims, 0.25 mm a pixel, its axis beside the image's middle.
const Camera camera{{1250, 1000}, 1500, 0.25};

/// A wheel in space: its plane is turned by `tilt` about the direction `turn`, then moved. Camera axes, millimetres.
struct Pose
{
    cv::Point2d place;
    double tilt = 0;
    double turn = 0;

    /// A point of the wheel by its direction and distance from the axis, `depth` behind the rim's plane.
    cv::Point2d seen(double angle, double radius, double depth) const
    {
        const cv::Vec3d along(std::cos(turn), std::sin(turn), 0);
        const cv::Vec3d down(-std::sin(turn) * std::cos(tilt), std::cos(turn) * std::cos(tilt), std::sin(tilt));
        const cv::Vec3d inward = along.cross(down);
        const cv::Vec3d p = radius * (std::cos(angle) * along + std::sin(angle) * down) + depth * inward;
        const double scale = camera.distance / (camera.distance + p[2]) / camera.pixelSize;
        return camera.principal + scale * (place + cv::Point2d(p[0], p[1]));
    }

    finder::Outline rim() const
    {
        const cv::Point2d guess = seen(0, 0, 0);
        std::vector<finder::EdgePoint> points;
        for (int i = 0; i < 360; ++i) {
            const cv::Point2d arm = seen(i * degree, rimRadius, 0) - guess;
            points.push_back({std::atan2(arm.y, arm.x), cv::norm(arm), 1, 0, false});
        }
        finder::OutlineFit fit = finder::fitOutline(guess, points, {});
        for (finder::EdgePoint& point : points) { // once more, from its own centre
            const cv::Point2d at = guess + point.radius * cv::Point2d(std::cos(point.angle), std::sin(point.angle));
            const cv::Point2d arm = at - fit.outline.center;
            point = {std::atan2(arm.y, arm.x), cv::norm(arm), 1, 0, false};
        }
        return finder::fitOutline(fit.outline.center, points, {}).outline;
    }

    Slope slope() const { return std::tan(tilt) * Slope(-std::sin(turn), std::cos(turn)); }
};

struct TiltCase
{
    Pose pose;
    double left; // pixels that the corrected centre may be off
};

struct DepthCase
{
    std::vector<cv::Point2d> places;
    double depth;
    double noise;     // pixels
    double tolerance; // millimetres
};

} // namespace

Q_DECLARE_METATYPE(OutlineCase)
Q_DECLARE_METATYPE(ConcentricCase)
Q_DECLARE_METATYPE(finder::EdgeKind)
Q_DECLARE_METATYPE(TiltCase)
Q_DECLARE_METATYPE(DepthCase)

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
        QVERIFY(std::abs(radius(true) - 200) < 0.01 && radius(false) > 200.1);
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
        QVERIFY(std::abs(fit.c2 - tilt) < 0.1 && std::abs(fit.lead - 100) < 0.15);
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

    void axisIsSeenAtTheHolesDepth_data()
    {
        Table::of<double, double, QPointF>({{"as deep as the rim", 0.0, 0.0, {60, -20}},
                                            {"deeper", 30.0, 0.0, {60, -20}},
                                            {"nearer", -15.0, 0.0, {-80, 10}},
                                            {"under the camera", 40.0, 0.0, {0, 0}},
                                            {"slanted", 30.0, 2.0, {60, 0}},
                                            {"slanted under the camera", 30.0, 6.0, {0, 0}}});
    }
    void axisIsSeenAtTheHolesDepth()
    {
        const auto [depth, tilt, place] = Table::row<double, double, QPointF>();
        const Pose pose{{place.x(), place.y()}, tilt * degree, 0.7};
        const cv::Point2d axis = finder::axisAtDepth(pose.seen(0, 0, 0), pose.slope(), camera, depth);
        const cv::Point2d truth = pose.seen(0, 0, depth);
        QVERIFY2(cv::norm(axis - truth) < 1e-9 + 0.5 * std::pow(std::tan(tilt * degree), 2) * depth / camera.pixelSize,
                 qPrintable(QString::number(cv::norm(axis - truth))));
    }

    void withoutDistanceNothingChanges()
    {
        const finder::Outline rim{{700, 800}, 850, 3, -2};
        QCOMPARE(finder::hubAxis(rim, {}, 30), rim.center);
        QCOMPARE(finder::hubAxis(rim, {{700, 800}, 1500, 0}, 30), rim.center);
        QCOMPARE(Camera().in({2448, 2048}).principal, cv::Point2d(1223.5, 1023.5));
        QCOMPARE(camera.in({2448, 2048}).principal, camera.principal);
    }

    void slantIsReadFromTheOutline_data()
    {
        Table::of<TiltCase>({{"flat", {{{80, 40}, 0, 0}, 0.01}},
                             {"a little, under the camera", {{{0, 0}, 1.5 * degree, 0.3}, 0.05}},
                             {"a little, aside", {{{90, -40}, 1.5 * degree, 2.5}, 0.3}},
                             {"much, under the camera", {{{0, 0}, 8 * degree, 1.1}, 0.5}},
                             {"much, aside", {{{50, 60}, 5 * degree, 4.0}, 1.0}}});
    }
    void slantIsReadFromTheOutline()
    {
        const auto [pose, left] = std::get<0>(Table::row<TiltCase>());
        const finder::Outline rim = pose.rim();
        const auto both = finder::slopesOf(rim, camera);
        const double first = std::abs(both.first - pose.slope());
        const double second = std::abs(both.second - pose.slope());
        const Slope slope = first < second ? both.first : both.second;
        QVERIFY2(std::abs(slope - pose.slope()) < 0.0005 + 0.06 * std::abs(pose.slope()),
                 qPrintable(QString::number(std::abs(slope - pose.slope()))));
        const cv::Point2d truth = pose.seen(0, 0, 0);
        const double off = cv::norm(finder::projectedCenter(rim, slope, camera) - truth);
        QVERIFY2(off < left, qPrintable(QString::number(off)));
        if (pose.tilt > degree)
            QVERIFY(cv::norm(rim.center - truth) > 5 * off); // so much is there to be corrected
    }

    void slantThatCouldGoEitherWayIsNotCorrected()
    {
        const Pose middle{{0, 0}, 2 * degree, 0.9};
        QVERIFY(std::abs(finder::expectedSlope(middle.rim(), camera, 0.012)) < 0.2 * std::abs(middle.slope()));
        // Aside, flat and steeply slanted wheels look the same, and the flat one is believed.
        const Pose aside{{120, 0}, 0, 0};
        QVERIFY(std::abs(finder::expectedSlope(aside.rim(), camera, 0.012)) < 0.002);
        QVERIFY(std::abs(finder::slopesOf(aside.rim(), camera).second) > 0.15);
    }

    void depthIsLearntFromPlaces_data()
    {
        Table::of<DepthCase>({{"two places", {{{-70, 20}, {60, -30}}, 30, 0, 0.05}},
                              {"three, exact", {{{-70, 20}, {60, -30}, {0, 50}}, -12, 0, 0.05}},
                              {"noise", {{{-70, 20}, {60, -30}, {30, 60}, {-50, -60}}, 30, 0.15, 4}}});
    }
    void depthIsLearntFromPlaces()
    {
        const auto [places, depth, noise, tolerance] = std::get<0>(Table::row<DepthCase>());
        cv::RNG random(12);
        std::vector<finder::DepthSight> sights;
        for (size_t i = 0; i < places.size(); ++i) {
            const Pose pose{places[i], 0, 1.3 * double(i)}; // turned as it comes
            const cv::Point2d error(random.gaussian(noise), random.gaussian(noise));
            sights.push_back({pose.rim(), pose.seen(0.4, ringRadius, depth) + error});
        }
        const auto estimate = finder::estimateDepth(sights, camera, 0.15);
        QVERIFY(estimate.has_value());
        QVERIFY2(std::abs(estimate->depth - depth) < tolerance, qPrintable(QString::number(estimate->depth)));
        QVERIFY(estimate->sigma > 0 && estimate->sigma < 5);
    }

    void depthIsLeftOpenByPlacesThatTeachNothing()
    {
        const auto sight = [](double x, double turn) {
            const Pose pose{{x, 0}, 0, turn};
            return finder::DepthSight{pose.rim(), pose.seen(0, ringRadius, 30)};
        };
        QVERIFY(!finder::estimateDepth({sight(50, 0)}, camera, 0.15));
        QVERIFY(!finder::estimateDepth({sight(50, 0.5), sight(50, 0.5)}, camera, 0.15));
        const auto near = finder::estimateDepth({sight(50, 0), sight(58, 0)}, camera, 0.15);
        QVERIFY(near && near->sigma > 8); // 8 mm apart
        const auto far = finder::estimateDepth({sight(80, 0), sight(-80, 0)}, camera, 0.15);
        QVERIFY(far && far->sigma < 1);
    }
};

QTEST_APPLESS_MAIN(FitsTest)
#include "tst_fits.moc"
