#include "ModelExamples.h"
#include "ModelProposer.h"
#include "ModelTeacher.h"
#include "Wheels.h"
#include "finder/HoleExamples.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <opencv2/imgproc.hpp>

using finder::HoleExample;
using finder::HoleExamples;

namespace {

const QString solution = QStringLiteral("工位一");
const QString model = QStringLiteral("五辐 17/A");
const QString file = QStringLiteral("/user/solutions/工位一/五辐 17%2FA.examples.json");

using Kind = IModelExamples::Kind;

/// A patch with one bright stripe, whose place makes it unlike the others; `noise` makes near copies.
HoleExample striped(int column, int noise = 0)
{
    HoleExample example;
    example.patch = cv::Mat(HoleExample::patchSide, HoleExample::patchSide, CV_8UC1, cv::Scalar(60));
    example.patch.colRange(column, column + 3) = 200;
    example.patch.rowRange(0, noise) = 90;
    example.rimRadius = 500;
    example.ringRadius = 435;
    example.holeRadius = 10;
    example.ringShare = 0.87;
    example.holeShare = 0.02;
    example.source = QStringLiteral("%1-%2").arg(column).arg(noise);
    return example;
}

QStringList sourcesOf(const QVector<HoleExample>& list)
{
    QStringList names;
    for (const HoleExample& example : list)
        names.append(example.source);
    return names;
}

QPointF pointOf(const cv::Point2d& point)
{
    return {point.x, point.y};
}

/// A store with a model that was taught on one wheel, and what it has been shown.
struct Shown
{
    Shown()
        : store(home.path(QStringLiteral("/user/solutions")))
        , examples(&store)
    {
        store.read();
        QVERIFY(store.addSolution(solution, &error));
        QVERIFY(store.saveModel(solution, model, finder::parametersOf(Wheels::model(Wheels::spec())), &error));
    }

    QVariantMap make(const wheel::WheelSpec& spec, const QPointF& off = {})
    {
        return examples.makeExample(finder::toImage(Wheels::image(spec)), store.parameters(solution, model),
                                    pointOf(wheel::truthOf(spec).holeCenter) + off, QStringLiteral("轮.png"), &error);
    }

    bool add(Kind kind, quint64 seed)
    {
        return examples.addExample(solution, model, kind, make(Wheels::spec("five", seed)), &error);
    }

    int holes() { return examples.examples(solution, model).holes.size(); }

    TempHome home;
    SolutionStore store;
    ModelExamples examples;
    QString error;
};

constexpr double clumsiness = 5; // pixels by which a click is off

/// A person's click near a point.
QPointF clickNear(const cv::Point2d& point, quint32 seed)
{
    QRandomGenerator random(seed);
    const double angle = random.generateDouble() * 2 * CV_PI;
    return {point.x + clumsiness * std::cos(angle), point.y + clumsiness * std::sin(angle)};
}

/// Anywhere on the outer edge of the rim.
cv::Point2d onRim(const wheel::WheelTruth& truth, double angle)
{
    return truth.hub + truth.rimRadius * cv::Point2d(std::cos(angle), std::sin(angle));
}

QVariantMap teach(const wheel::WheelSpec& spec, quint32 seed, QString* error)
{
    const wheel::WheelTruth truth = wheel::truthOf(spec);
    ModelTeacher teacher;
    return teacher.propose(finder::toImage(Wheels::image(spec)), clickNear(onRim(truth, 0.7 * seed), seed),
                           clickNear(truth.holeCenter, seed + 100), error);
}

/// Another wheel of the kind, in worse light and focus than the one that was taught.
wheel::WheelSpec worseWheel(const QString& design, quint64 seed, bool hole)
{
    wheel::WheelSpec spec = Wheels::spec(design.toStdString(), seed, hole);
    spec.optics.blur = 1.6;
    spec.optics.noise = 8;
    spec.light.gradient = 0.3;
    return spec;
}

} // namespace

class ExamplesTest : public QObject
{
    Q_OBJECT

private slots:
    /// Nothing pointed out, the centre, both; and a wheel so far aside that the centre has to be pointed out.
    void modelIsProposedFromAPictureAlone_data()
    {
        Table::of<int, bool, bool>({{"nothing pointed out", 0, false, false},
                                    {"centre and hole", 0, true, true},
                                    {"aside, centre", 260, true, false},
                                    {"no wheel", -1, false, false}});
    }
    void modelIsProposedFromAPictureAlone()
    {
        const auto [aside, center, hole] = Table::row<int, bool, bool>();
        const wheel::WheelSpec spec = Wheels::spec("five", 3);
        const wheel::WheelTruth truth = wheel::truthOf(spec);
        cv::Mat picture = aside < 0 ? cv::Mat(600, 800, CV_8U, cv::Scalar(120)) : Wheels::image(spec);
        if (aside > 0)
            cv::copyMakeBorder(picture, picture, 0, 0, aside, 0, cv::BORDER_REPLICATE);
        const cv::Point2d shift(std::max(0, aside), 0);
        IModelProposer::Hints hints;
        if (center)
            hints.center = clickNear(truth.hub + shift, 4);
        if (hole)
            hints.hole = clickNear(truth.holeCenter + shift, 5);
        ModelTeacher teacher;
        const auto seen = ModelProposer(&teacher).proposeModel(finder::toImage(picture), hints);
        QCOMPARE(seen.parameters.isEmpty(), aside < 0);
        QCOMPARE(seen.error.contains("点击"), aside < 0);
        if (aside < 0)
            return;
        QVERIFY(cv::norm(cv::Point2d(seen.hole.x(), seen.hole.y()) - truth.holeCenter - shift) < 1);
        QVERIFY(cv::norm(cv::Point2d(seen.center.x(), seen.center.y()) - truth.hub - shift) < 1);
        QVERIFY(std::abs(seen.parameters["rim_radius"].toDouble() / truth.rimRadius - 1) < 0.01);
    }

    void patchShowsTheHoleTheSameWayAtAnyTurnAndSize_data()
    {
        Table::of<double, double>({{"turned", 1, 2}, {"half the size", 0.5, 0}, {"larger and turned", 1.7, -1.1}});
    }
    void patchShowsTheHoleTheSameWayAtAnyTurnAndSize()
    {
        const auto [scale, turn] = Table::row<double, double>();
        cv::Mat wheel(1400, 1400, CV_8UC1, cv::Scalar(150));
        cv::circle(wheel, {940, 700}, 24, cv::Scalar(20), -1, cv::LINE_AA);
        cv::line(wheel, {860, 760}, {1000, 760}, cv::Scalar(240), 8, cv::LINE_AA); // on one side only: a mirror shows
        cv::GaussianBlur(wheel, wheel, {}, 3);
        const cv::Point2d middle(699.5, 699.5);
        const double c = scale * std::cos(turn);
        const double s = scale * std::sin(turn);
        const cv::Matx23d move(c, -s, middle.x - c * middle.x + s * middle.y, s, c,
                               middle.y - s * middle.x - c * middle.y);
        cv::Mat moved;
        cv::warpAffine(wheel, moved, move, wheel.size(), cv::INTER_AREA, cv::BORDER_REPLICATE);
        const auto to = [&move](const cv::Point2d& p) { return cv::Point2d(move * cv::Vec3d(p.x, p.y, 1)); };
        const cv::Point2d hole(940, 700);
        const HoleExample one = finder::makeExample(wheel, {middle, 350, 0, 0}, hole, 24);
        const HoleExample other = finder::makeExample(moved, {middle, 350 * scale, 0, 0}, to(hole), 24 * scale);
        QVERIFY(finder::distanceBetween(one.patch, other.patch) < 0.02);
        QVERIFY(std::abs(one.ringShare - 240.5 / 350) < 1e-3 && std::abs(other.ringShare - one.ringShare) < 1e-6);
        QVERIFY(std::abs(other.holeRadius - 24 * scale) < 1e-9 && std::abs(other.holeShare - one.holeShare) < 1e-9);
        QVERIFY2(one.patch.at<uchar>(52, 32) > 200, "the y axis points as in the image");
        cv::Mat mirrored;
        cv::flip(one.patch, mirrored, 0);
        QVERIFY(finder::distanceBetween(one.patch, mirrored) > 0.1);
        for (const cv::Point2d& nowhere : {cv::Point2d(1500, 50), middle, cv::Point2d(qQNaN(), 50)})
            QVERIFY(finder::makeExample(wheel, {middle, 350, 0, 0}, nowhere, 24).patch.empty());
        QVERIFY(finder::makeExample(wheel, {middle, 350, 0, 0}, hole, qQNaN()).patch.empty());
        QVERIFY(finder::makeExample(wheel, {middle, 0, 0, 0}, hole, 24).patch.empty());
        QVERIFY(finder::makeExample(cv::Mat(), {middle, 350, 0, 0}, hole, 24).patch.empty());
    }

    void mostDifferentOnesStay()
    {
        QVector<HoleExample> list;
        for (const HoleExample& example : {striped(0), striped(0, 2), striped(6), striped(6, 14)})
            QVERIFY(HoleExamples::add(&list, example));
        for (int i = 4; i < HoleExamples::most; ++i)
            QVERIFY(HoleExamples::add(&list, striped(3 * i)));
        QCOMPARE(list.size(), HoleExamples::most);
        QVERIFY(HoleExamples::add(&list, striped(9)));
        QVERIFY2(!sourcesOf(list).contains("0-2"), "the one most like another goes, but not the first");
        QVERIFY(HoleExamples::add(&list, striped(30, 2)));
        QVERIFY2(!sourcesOf(list).contains("30-0") && sourcesOf(list).contains("30-2"), "the older of two alike goes");
        QCOMPARE(list.size(), HoleExamples::most);
        QCOMPARE(list.first().source, "0-0");
        HoleExample again = striped(33);
        again.source = QStringLiteral("again");
        QVERIFY(HoleExamples::add(&list, again));
        QCOMPARE(list.size(), HoleExamples::most);
        QCOMPARE(sourcesOf(list).count("again"), 1);
        QVERIFY(!HoleExamples::add(&list, HoleExample()));
    }

    void sizesAreProposedFromThreeHolesOn()
    {
        Shown shown;
        QVERIFY(shown.add(Kind::Hole, 1) && shown.add(Kind::Hole, 2) && shown.add(Kind::Rejected, 3));
        QVERIFY(shown.examples.proposeSizes(solution, model, &shown.error).isEmpty());
        QVERIFY2(shown.error.contains("2"), qPrintable(shown.error));
        const QVariantMap before = shown.store.parameters(solution, model);
        QVERIFY(shown.add(Kind::Hole, 4) && shown.add(Kind::Hole, 5));
        const QVariantMap sizes = shown.examples.proposeSizes(solution, model, &shown.error);
        QCOMPARE(shown.store.parameters(solution, model), before);
        finder::HoleModel proposed;
        QVERIFY2(finder::applyParameters(sizes, &proposed, &shown.error), qPrintable(shown.error));
        QCOMPARE(proposed.scoreLimit, before["score_limit"].toDouble());
        for (const quint64 seed : {1, 2, 4, 5}) {
            const wheel::WheelTruth truth = wheel::truthOf(Wheels::spec("five", seed));
            QVERIFY(proposed.rimRange(1366).contains(truth.rimRadius));
            QVERIFY(proposed.ringRange(truth.rimRadius).contains(truth.ringRadius));
            QVERIFY(proposed.holeRange(truth.rimRadius).contains(truth.holeRadius));
        }
        HoleExamples examples;
        for (const double share : {0.85, 0.86, 0.89}) {
            HoleExample example = striped(static_cast<int>(1000 * share) % 50);
            example.ringShare = share;
            HoleExamples::add(&examples.holes, example);
        }
        QVERIFY(shown.store.setExamples(solution, model, examples, &shown.error));
        const QVariantMap spread = shown.examples.proposeSizes(solution, model, &shown.error);
        QCOMPARE(spread["ring_radius"].toDouble(), 430.0);
        QCOMPARE(spread["ring_radius_tol"].toDouble(), 7.0); // twice 3.488 %, rounded up
        QCOMPARE(spread["rim_radius_tol"].toDouble(), 5.0);
    }

    void examplesAreThereTomorrowAndGoWithTheirModel()
    {
        Shown shown;
        QVERIFY2(shown.add(Kind::Hole, 1) && shown.add(Kind::Hole, 2) && shown.add(Kind::Rejected, 3),
                 qPrintable(shown.error));
        const auto before = shown.store.examples(solution, model);
        shown.store.read();
        const auto after = shown.store.examples(solution, model);
        QVERIFY(after && after != before && shown.store.exampleTrouble(solution, model).isEmpty());
        QVERIFY(after->holes.size() == 2 && after->rejected.size() == 1);
        QCOMPARE(after->holes[1].source, QStringLiteral("轮.png"));
        QCOMPARE(after->holes[1].ringRadius, before->holes[1].ringRadius);
        QCOMPARE(after->holes[1].holeShare, before->holes[1].holeShare);
        QCOMPARE(cv::norm(after->holes[1].patch, before->holes[1].patch, cv::NORM_INF), 0.0);
        finder::HoleModel run;
        SolutionStore::Answer answer = SolutionStore::Answer::Hole;
        QVERIFY(shown.store.lookUp(solution, model, &run, &answer));
        QCOMPARE(run.examples.get(), after.get());
        const QVariantMap parameters = shown.store.parameters(solution, model);
        QVERIFY2(shown.store.saveModel(solution, model, parameters, &shown.error), "edited");
        QVERIFY(shown.add(Kind::Rejected, 2)); // a second thought
        QCOMPARE(shown.holes(), 1);

        const QString copy = QStringLiteral("副本");
        QVERIFY(!shown.examples.copyExamples(solution, model, copy, &shown.error));
        QVERIFY(shown.store.saveModel(solution, copy, parameters, &shown.error));
        QVERIFY(shown.examples.copyExamples(solution, model, copy, &shown.error));
        QVERIFY(!shown.examples.removeExample(solution, copy, Kind::Hole, 1, &shown.error));
        QVERIFY(shown.examples.removeExample(solution, copy, Kind::Hole, 0, &shown.error));
        QCOMPARE(shown.examples.examples(solution, copy).holes.size(), 0);
        while (!shown.examples.examples(solution, copy).rejected.isEmpty())
            QVERIFY(shown.examples.removeExample(solution, copy, Kind::Rejected, 0, &shown.error)); // the file goes
        QCOMPARE(shown.holes(), 1);
        QVERIFY(shown.store.removeModel(solution, model, &shown.error));
        QVERIFY2(!QFile::exists(shown.home.path(file)), "nothing waits for the next model of this name");
        for (const QString& other : {model, finder::autoModelName()})
            QVERIFY(!shown.examples.addExample(solution, other, Kind::Hole, shown.make(Wheels::spec()), &shown.error));
    }

    void damagedExamplesLeaveTheModelRunning_data()
    {
        Table::of<QByteArray, QByteArray, QString, int>(
            {{"cut", "\"rejected\"", "", "line", 0},
             {"no picture", "\"patch\": \"iV", "\"patch\": \"xx", "entry 1: \"patch\"", 1},
             {"no size", "\"hole_share\": 0", "\"hole_share\": -0", "entry 1: \"hole_share\"", 1}});
    }
    void damagedExamplesLeaveTheModelRunning()
    {
        const auto [from, to, place, left] = Table::row<QByteArray, QByteArray, QString, int>();
        Shown shown;
        QVERIFY(shown.add(Kind::Hole, 1) && shown.add(Kind::Hole, 2));
        QByteArray content = shown.home.read(file);
        const int at = content.indexOf(from);
        QVERIFY(at > 0);
        content = to.isEmpty() ? content.left(at) : content.replace(at, from.size(), to);
        shown.home.write(file, content);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("examples\\.json.*") + place));
        shown.store.read();
        QVERIFY(shown.store.models(solution).contains(model));
        const IModelExamples::Examples read = shown.examples.examples(solution, model);
        QVERIFY2(read.trouble.contains(place), qPrintable(read.trouble));
        QCOMPARE(read.holes.size(), left);
        QVERIFY2(shown.add(Kind::Hole, 3), qPrintable(shown.error));
        QCOMPARE(shown.holes(), left + 1);
        QVERIFY(shown.examples.examples(solution, model).trouble.isEmpty());
        QCOMPARE(shown.home.keptAside(file).size(), 1);
        shown.home.block();
        QVERIFY(!shown.add(Kind::Hole, 4) && shown.error.contains("examples.json"));
        QCOMPARE(shown.holes(), left + 1);
    }

    void placeIsMeasuredWhereThePersonPoints()
    {
        Shown shown;
        const wheel::WheelSpec spec = Wheels::spec("five", 6);
        const wheel::WheelTruth truth = wheel::truthOf(spec);
        const QVariantMap measured = shown.make(spec, {6, -5});
        QVERIFY2(!measured.isEmpty(), qPrintable(shown.error));
        QVERIFY(std::abs(measured["ring_radius"].toDouble() - truth.ringRadius) < 1.5);
        QVERIFY(std::abs(measured["hole_radius"].toDouble() - truth.holeRadius) < 1.5);
        // Bare metal, half a turn on: nothing to measure there, so the place as it was pointed at.
        const QPointF across = 2 * (pointOf(truth.hub) - pointOf(truth.holeCenter));
        const QVariantMap pointed = shown.make(spec, across);
        QVERIFY2(!pointed.isEmpty(), qPrintable(shown.error));
        QVERIFY(std::abs(pointed["hole_share"].toDouble() - truth.holeRadius / truth.rimRadius) < 0.004);
        for (const QPointF& off : {QPointF(4000, 0), QPointF(qQNaN(), 0), 0.7 * across + QPointF(0, 9e9)})
            QVERIFY(shown.make(spec, off).isEmpty() && !shown.error.isEmpty());
        QVERIFY(shown.examples.makeExample(QImage(), {}, {5, 5}, {}, &shown.error).isEmpty());
    }

    void twoRoughClicksTeachEveryDesign_data()
    {
        QTest::addColumn<QString>("design");
        for (const wheel::Design& design : wheel::designs())
            QTest::newRow(design.key.c_str()) << QString::fromStdString(design.key);
    }
    void twoRoughClicksTeachEveryDesign()
    {
        QFETCH(QString, design);
        QString error;
        const wheel::WheelSpec good = Wheels::spec(design.toStdString(), 501);
        const QVariantMap parameters = teach(good, 3, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        const wheel::WheelTruth truth = wheel::truthOf(good);
        const auto near = [&](const char* name, double value, double share) {
            const double taught = parameters.value(QLatin1String(name)).toDouble();
            return std::abs(taught - value) < share * value;
        };
        QVERIFY(near("rim_radius", truth.rimRadius, 0.01) && near("ring_radius", truth.ringRadius, 0.01));
        QVERIFY(near("hole_radius", truth.holeRadius, 0.15));
        finder::HoleModel model;
        QVERIFY2(finder::applyParameters(parameters, &model, &error), qPrintable(error));
        QVERIFY(model.taught);
        for (quint64 seed = 1; seed <= 2; ++seed) {
            const wheel::WheelSpec other = worseWheel(design, 900 + seed, true);
            const finder::FindResult found = Wheels::locate(Wheels::image(other), model);
            QVERIFY2(found.found(), qPrintable(finder::resultTip(found.error)));
            QVERIFY(Wheels::turnBetween(found.angle, wheel::truthOf(other).angle) < 0.2);
            QVERIFY(!Wheels::locate(Wheels::image(worseWheel(design, 950 + seed, false)), model).found());
        }
    }

    void clicksThatShowNoHoleAreRefusedWithTheReason_data()
    {
        const wheel::WheelTruth truth = wheel::truthOf(Wheels::spec());
        const QImage image = finder::toImage(Wheels::image(Wheels::spec()));
        const QPointF rim = clickNear(onRim(truth, 2), 1), hole = clickNear(truth.holeCenter, 2);
        const QPointF hub(truth.hub.x, truth.hub.y);
        const auto at = [&](double share, const QPointF& point) { return hub + share * (point - hub); };
        QImage black(800, 600, QImage::Format_RGB32);
        black.fill(Qt::black);
        Table::of<QImage, QPointF, QPointF, QString>(
            {{"rim clicked on a spoke", image, at(0.6, rim), hole, "轮缘"},
             {"rim clicked beside the wheel", image, at(1.15, rim), hole, "轮缘"},
             {"hole clicked on bare metal", image, rim, 2 * hub - hole, "清晰的孔"},
             {"hole clicked outside of the rim", image, rim, at(1.3, hole), "轮缘以内"},
             {"beside the image", image, QPointF(-40, 5), hole, "不在图像内"},
             {"no number", image, rim, QPointF(qQNaN(), 7), "不在图像内"},
             {"no image", QImage(), rim, hole, ""},
             {"too small", QImage(20, 20, QImage::Format_Mono), rim, hole, ""},
             {"black", black, QPointF(700, 300), QPointF(600, 300), ""}});
    }
    void clicksThatShowNoHoleAreRefusedWithTheReason()
    {
        const auto [image, rim, hole, reason] = Table::row<QImage, QPointF, QPointF, QString>();
        QString error;
        QVERIFY(ModelTeacher().propose(image, rim, hole, &error).isEmpty());
        QVERIFY2(!error.isEmpty() && error.contains(reason), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(ExamplesTest)
#include "tst_examples.moc"
