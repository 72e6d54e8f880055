#include "finder/OutlineFit.h"
#include "finder/Perspective.h"
#include "support/Table.h"

#include <QtTest>

namespace {

using finder::Camera;
using finder::Slope;

constexpr double degree = CV_PI / 180;
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

Q_DECLARE_METATYPE(TiltCase)
Q_DECLARE_METATYPE(DepthCase)

/// The view of a wheel by a pin-hole camera, against exact projection.
class PerspectiveTest : public QObject
{
    Q_OBJECT

private slots:
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

QTEST_APPLESS_MAIN(PerspectiveTest)
#include "tst_perspective.moc"
