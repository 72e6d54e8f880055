#include "render/SpecDraw.h"
#include "render/WheelRenderer.h"
#include "support/Table.h"

#include <opencv2/imgproc.hpp>

#include <map>

using namespace wheel;

namespace {

constexpr double degree = CV_PI / 180;

/// A wheel in even light without texture whose hole is a flat disc: what is measured in it is geometry.
WheelSpec plainWheel(const char* design = "five")
{
    WheelSpec spec = drawWheel(*findDesign(design), Difficulty::Easy, {820, 700}, 5, true);
    spec.hub = {407.3, 351.8};
    spec.rimRadius = 300.4;
    spec.face.machined = 0;
    spec.face.ledgeSlope = 0;
    spec.light = LightSpec();
    spec.light.ambient = 1;
    spec.light.diffuse = spec.light.specular = 0;
    spec.scene = SceneSpec();
    spec.scene.grain = spec.scene.backgroundTexture = 0;
    spec.scene.background = 30;
    spec.optics = OpticsSpec();
    spec.optics.noise = spec.optics.blur = 0;
    spec.hole.ringRadius = spec.face.ring * spec.rimRadius;
    spec.hole.chamfer = 0;
    spec.hole.wall = {};
    spec.hole.depthGray = 0;
    spec.hole.valve = Valve::None;
    return spec;
}

/// The part of each pixel that a hole of gray value 0 covers.
cv::Mat holeCoverage(WheelSpec spec)
{
    cv::Mat with, without;
    renderWheel(spec).image.convertTo(with, CV_64F);
    spec.hole.present = false;
    renderWheel(spec).image.convertTo(without, CV_64F);
    return 1 - with / without;
}

/// The part of each pixel that changes when what is seen through the hole does.
cv::Mat mouthCoverage(WheelSpec spec)
{
    cv::Mat bright, dark;
    spec.hole.depthGray = 200;
    renderWheel(spec).image.convertTo(bright, CV_64F);
    spec.hole.depthGray = 0;
    renderWheel(spec).image.convertTo(dark, CV_64F);
    return (bright - dark) / 200;
}

cv::Point2d centroid(const cv::Moments& moments)
{
    return {moments.m10 / moments.m00, moments.m01 / moments.m00};
}

/// A quarter of them without a hole.
template <typename Check>
void forEachDrawnWheel(Difficulty difficulty, cv::Size size, const Check& check)
{
    for (quint64 seed = 0; seed < 900 && !QTest::currentTestFailed(); ++seed)
        check(drawWheel(designs()[seed % designs().size()], difficulty, size, seed, seed % 4 != 0));
}

} // namespace

class WheelRenderTest : public QObject
{
    Q_OBJECT

private slots:
    void holeLiesWhereTheTruthSays_data()
    {
        Table::of<double, double, double, double, double, double>({{"small", 12.3, 6.0, 1.0, 0.0, 0.0, 0.0},
                                                                   {"large", 101.7, 19.6, 1.0, 0.0, 0.0, 0.0},
                                                                   {"tilted", 203.1, 8.3, 0.75, 0.0, 0.0, 0.0},
                                                                   {"tilted askew", 261.9, 12.7, 0.8, 35.0, 0.0, 0.0},
                                                                   {"out of focus", 77.7, 7.1, 0.9, 10.0, 2.2, 0.0},
                                                                   {"turning", 333.3, 10.2, 1.0, 0.0, 0.6, 0.8}});
    }
    void holeLiesWhereTheTruthSays()
    {
        const auto [angle, radius, ratio, axisTurn, blur, motion] =
            Table::row<double, double, double, double, double, double>();
        WheelSpec spec = plainWheel();
        spec.hole.angle = angle;
        spec.hole.radius = radius;
        spec.hole.axisRatio = ratio;
        spec.hole.axisTurn = axisTurn;
        spec.optics.blur = blur;
        spec.optics.motion = motion;
        const WheelTruth truth = truthOf(spec);
        const cv::Moments moments = cv::moments(holeCoverage(spec));
        const cv::Point2d found = centroid(moments);
        QVERIFY2(cv::norm(found - truth.holeCenter) < 0.02,
                 qPrintable(QString::number(cv::norm(found - truth.holeCenter))));
        const double seen = std::atan2(truth.hub.y - found.y, found.x - truth.hub.x) / degree;
        QVERIFY(std::fabs(std::remainder(seen - truth.angle, 360)) < 0.005);
        const double area = CV_PI * radius * radius * ratio;
        if (blur == 0)
            QVERIFY(std::fabs(moments.m00 - area) < 0.02 * area);
    }

    void edgesOfTheHoleLieWhereTheTruthSays_data()
    {
        Table::of<double, double, double, QPointF>({{"crescent", 5.0, 1.0, 0.0, QPointF()},
                                                    {"dark ring", 8.0, 0.5, 0.0, QPointF()},
                                                    {"bright ring aside", 8.0, 1.3, 0.0, QPointF(2.1, -1.3)},
                                                    {"counterbore aside", 0.0, 1.0, 11.0, QPointF(-1.9, 2.4)},
                                                    {"both, aside", 3.0, 0.7, 11.0, QPointF(-2.6, 1.7)}});
    }
    void edgesOfTheHoleLieWhereTheTruthSays()
    {
        const auto [chamfer, gray, step, shift] = Table::row<double, double, double, QPointF>();
        WheelSpec spec = plainWheel();
        spec.hole.angle = 47.3;
        spec.hole.radius = 13.4;
        spec.hole.axisRatio = 0.85;
        spec.hole.chamfer = chamfer;
        spec.hole.chamferGray = gray;
        spec.hole.chamferShine = 0.1;
        spec.hole.step = step;
        spec.hole.stepGray = 0.6;
        spec.hole.stepDepth = 3;
        spec.hole.stepShadow = 0.5;
        spec.hole.edgeShift = {shift.x(), shift.y()};
        const WheelTruth truth = truthOf(spec);
        const auto lies = [](const cv::Mat& coverage, cv::Point2d center, double area) {
            const cv::Moments moments = cv::moments(coverage);
            QVERIFY2(cv::norm(centroid(moments) - center) < 0.03, qPrintable(QString::number(moments.m00)));
            QVERIFY2(std::fabs(moments.m00 - area) < 0.02 * area, qPrintable(QString::number(moments.m00 / area)));
        };
        lies(mouthCoverage(spec), truth.holeCenter, CV_PI * 13.4 * 13.4 * 0.85);
        QCOMPARE(truth.edgeRadius, 13.4 + chamfer + step);
        spec.hole.chamferShine = spec.hole.chamferGray = spec.hole.stepGray = 0; // all of it is as dark as a hole
        spec.hole.axisRatio = 1;
        if (chamfer * step == 0)
            lies(holeCoverage(spec), truth.holeCenter + spec.hole.edgeShift, CV_PI * std::pow(truth.edgeRadius, 2));
    }

    void everyDrawnWheelKeepsTheLimits_data()
    {
        Table::of<QSize>({{"5 megapixels", QSize(2448, 2048)}, {"upright", QSize(900, 1200)}});
    }
    void everyDrawnWheelKeepsTheLimits()
    {
        const auto [size] = Table::row<QSize>();
        const double height = size.height();
        const cv::Size pixels(size.width(), size.height());
        forEachDrawnWheel(Difficulty::Varied, pixels, [&, size = size](const WheelSpec& spec) {
            const WheelTruth t = truthOf(spec);
            QVERIFY(t.rimRadius >= 0.25 * height && t.rimRadius <= 0.5 * height);
            QVERIFY(std::min(t.hub.x, size.width() - 1 - t.hub.x) > t.rimRadius);
            QVERIFY(std::min(t.hub.y, height - 1 - t.hub.y) > t.rimRadius);
            QVERIFY(std::fabs(t.hub.x - (size.width() - 1) / 2.0) <= 0.08 * height);
            QVERIFY(std::fabs(t.hub.y - (height - 1) / 2.0) <= 0.08 * height);
            QVERIFY(t.angle >= 0 && t.angle < 360);
            QVERIFY(t.holeRadius >= 0.013 * t.rimRadius && t.holeRadius <= 0.055 * t.rimRadius);
            QVERIFY(t.edgeRadius >= t.holeRadius);
            QVERIFY(t.ringRadius - t.edgeRadius > spec.face.ledgeInner * t.rimRadius);
            QVERIFY(t.ringRadius + t.edgeRadius < spec.face.lipInner * t.rimRadius);
            QVERIFY(spec.face.windowOuter < spec.face.ledgeInner && spec.face.windowInner < spec.face.windowOuter);
            QVERIFY(spec.optics.noise > 0 && spec.optics.noise <= 15);
        });
    }

    void nothingElseCanBeTheValveHole()
    {
        int vents = 0, spots = 0;
        forEachDrawnWheel(Difficulty::Varied, {2448, 2048}, [&](const WheelSpec& spec) {
            const WheelTruth truth = truthOf(spec);
            for (const MarkSpec& mark : spec.scene.marks) {
                if (!truth.hole) { // then no single round spot is as large as one
                    const bool spot = mark.kind == MarkKind::Drain || mark.kind == MarkKind::PaintDot;
                    QVERIFY(!spot || mark.radius < 0.9 * 0.013 * spec.rimRadius);
                    spots += spot;
                    continue;
                }
                QVERIFY(cv::norm(markCenter(spec, mark) - truth.holeCenter) > truth.edgeRadius + mark.radius);
                if (mark.kind != MarkKind::Vent && mark.kind != MarkKind::Drain)
                    continue;
                const double size = mark.radius / truth.holeRadius;
                const bool nearRing = std::fabs(mark.ringRadius - truth.ringRadius) < 0.08 * truth.rimRadius;
                QVERIFY2(!nearRing || size < 0.75 || size > 1.35, qPrintable(QString::number(size)));
                vents += nearRing;
            }
        });
        QVERIFY2(vents > 200 && spots > 60, qPrintable(QStringLiteral("%1 %2").arg(vents).arg(spots)));
    }

    void demoIsPlainAndTheOthersDifferInEveryWay()
    {
        forEachDrawnWheel(Difficulty::Demo, {2448, 2048}, [](const WheelSpec& spec) {
            QVERIFY(spec.scene.marks.empty() && spec.hole.edge == HoleEdge::Crescent);
            QVERIFY(spec.hole.inside == HoleInside::Dark && spec.hole.depthGray <= 28 && spec.hole.step == 0);
            QCOMPARE(spec.hole.radius, spec.face.hole * spec.rimRadius);
        });
        std::map<std::string, int> seen;
        forEachDrawnWheel(Difficulty::Varied, {2448, 2048}, [&](const WheelSpec& spec) {
            const auto count = [&seen](const std::string& what, bool is = true) { seen[what] += is; };
            count("edge " + std::to_string(int(spec.hole.edge)));
            count("inside " + std::to_string(int(spec.hole.inside)));
            count("small", spec.hole.radius < 0.018 * spec.rimRadius);
            count("large", spec.hole.radius > 0.045 * spec.rimRadius);
            count("valve", spec.hole.valve != Valve::None);
            count("turning", spec.optics.motion > 0);
            count("faint", spec.optics.contrast < 1);
            count("bright behind", spec.scene.background * spec.light.exposure > 140);
            count("glare", spec.light.glares > 0);
            for (const MarkSpec& mark : spec.scene.marks)
                count("mark " + std::to_string(int(mark.kind)));
        });
        QCOMPARE(seen.size(), size_t(3 + 4 + 9 + 7));
        for (const auto& [what, times] : seen)
            QVERIFY2(times > 25, (what + ": " + std::to_string(times)).c_str());
    }

    void anySizeAndPlaceIsRendered()
    {
        for (const cv::Size size : {cv::Size(64, 64), cv::Size(101, 77), cv::Size(65, 1001), cv::Size(1001, 64)})
            for (const Design& design : designs()) {
                WheelSpec spec = drawWheel(design, Difficulty::Varied, size, 3, true);
                spec.optics.motion = 1;
                const cv::Mat image = renderWheel(spec).image;
                QVERIFY(image.size() == size && image.type() == CV_8UC1);
            }
        WheelSpec spec = drawWheel(designs()[0], Difficulty::Varied, {320, 240}, 4, true);
        spec.scene.letterings = spec.scene.dirt = spec.scene.scratches = spec.light.glares = 30;
        spec.hub = {-40, 250};
        for (int i = 0; i < 90; ++i)
            spec.scene.marks.push_back({static_cast<MarkKind>(i % 9), 4.0 * i, 100, 1.0 + i % 30, 1, 7});
        QVERIFY(!renderWheel(spec).image.empty());
    }
};

QTEST_GUILESS_MAIN(WheelRenderTest)
#include "tst_wheelrender.moc"
