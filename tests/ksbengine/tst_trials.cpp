#include "Engine.h"
#include "Wheels.h"
#include "support/TempHome.h"

#include <valvecell/Extension.h>
#include <valvecell/ResultKeys.h>

#include <mutex>

namespace {

const QString solution = QStringLiteral("工位一");

double apart(const QPointF& a, const cv::Point2d& b)
{
    return std::hypot(a.x() - b.x, a.y() - b.y);
}

QVariantMap algo(const IModelTrial::Outcome& outcome)
{
    return outcome.result.value(ResultKeys::algoResult).toMap();
}

/// An engine with one solution, and the outcomes of its trials.
class TrialBench
{
public:
    TrialBench()
        : spec(Wheels::spec())
        , truth(wheel::truthOf(spec))
        , image(finder::toImage(Wheels::image(spec)))
        , engine(std::make_unique<Engine>(home.path(QStringLiteral("/user/solutions"))))
    {
        engine->initialise();
        extensionOf<ISolutionStore>(main())->addSolution(solution, nullptr);
    }

    IEngine* main() const { return engine.get(); }
    QVariantMap taught() const { return finder::parametersOf(Wheels::model(spec)); }

    void run(const QImage& tried, const QVariantMap& parameters, bool withStages, const QString& in = solution)
    {
        extensionOf<IModelTrial>(main())->runTrial(tried, in, parameters, withStages,
                                                   [this](const IModelTrial::Outcome& outcome) {
                                                       const std::lock_guard<std::mutex> lock(m_mutex);
                                                       m_outcomes.append(outcome);
                                                   });
    }

    QList<IModelTrial::Outcome> outcomes() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_outcomes;
    }

    TempHome home;
    wheel::WheelSpec spec;
    wheel::WheelTruth truth;
    QImage image;
    std::unique_ptr<Engine> engine;

private:
    mutable std::mutex m_mutex;
    QList<IModelTrial::Outcome> m_outcomes;
};

} // namespace

class TrialsTest : public QObject
{
    Q_OBJECT

    static void theMouthIsShown(const IModelTrial::Outcome& outcome)
    {
        const TrialStage& stage = outcome.stages[5];
        const TrialCircle& mouth = stage.circles[0];
        QVERIFY(stage.points.size() > 20 && mouth.accepted);
        for (const QPointF& point : stage.points)
            QVERIFY(apart(point, {mouth.center.x(), mouth.center.y()}) < 1.01 * mouth.radius);
        QVERIFY2(qGray(stage.picture.pixel(mouth.center.toPoint())) < 60, "dark in the hole's centre");
        const QVariantMap answer = algo(outcome);
        QVERIFY(answer.value("mouthPixels").toInt() > 100);
        QVERIFY(answer.value("mouthSpread").toDouble() < 0.5);
        QVERIFY(answer.value("outerRadius").toDouble() >= answer.value("holeRadius").toDouble());
        QVERIFY(stage.note.contains(answer.value("mouthPixels").toString()));
    }

private slots:
    void everyStageShowsTheHoleWhereItIs()
    {
        TrialBench bench;
        bench.run(bench.image, bench.taught(), true);
        QTRY_COMPARE(bench.outcomes().size(), 1);
        const IModelTrial::Outcome outcome = bench.outcomes().first();
        QCOMPARE(algo(outcome).value("error"), QVariant(0));
        QCOMPARE(outcome.stages.size(), 6);
        for (const TrialStage& stage : outcome.stages)
            QVERIFY(!stage.title.isEmpty() && !stage.note.isEmpty());

        const TrialStage& hub = outcome.stages[0];
        QVERIFY(apart(hub.circles[0].center, bench.truth.hub) < 1 && hub.circles[0].accepted);
        QVERIFY(hub.points.size() > 100);
        for (const QPointF& point : hub.points)
            QVERIFY(std::abs(apart(point, bench.truth.hub) - bench.truth.rimRadius) < 0.03 * bench.truth.rimRadius);

        const TrialStage& ring = outcome.stages[1];
        const QPointF inRing = ring.circles[0].center;
        QVERIFY(ring.picture.rect().contains(inRing.toPoint()));
        QVERIFY2(qGray(ring.picture.pixel(inRing.toPoint())) < 60, "the ring is dark where the hole shall be");

        const TrialStage& candidates = outcome.stages[2];
        QVERIFY(apart(candidates.circles[0].center, bench.truth.holeCenter) < 3);
        QVERIFY(candidates.circles[0].accepted && candidates.circles[0].label.toDouble() > 0.5);

        const TrialStage& edge = outcome.stages[3];
        const TrialCircle mouth = edge.circles[0];
        QVERIFY(edge.points.size() >= 10);
        for (const QPointF& point : edge.points)
            QVERIFY(std::abs(apart(point, {mouth.center.x(), mouth.center.y()}) - mouth.radius) < 0.4 * mouth.radius);
        const TrialStage& residuals = outcome.stages[4];
        QCOMPARE(residuals.points.size(), edge.points.size());
        for (const QPointF& point : residuals.points)
            QVERIFY(residuals.picture.rect().contains(point.toPoint()));
        theMouthIsShown(outcome);
    }

    void stagesEndWhereTheFinderDid_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<int>("error");
        QTest::addColumn<int>("stages");
        QImage black(1200, 900, QImage::Format_Grayscale8);
        black.fill(2);
        const wheel::WheelSpec empty = Wheels::spec("five", 4, false);
        QTest::newRow("no image") << QImage() << int(finder::FindError::BadImage) << 1;
        QTest::newRow("black") << black << int(finder::FindError::TooDark) << 1;
        QTest::newRow("no hole") << finder::toImage(Wheels::image(empty)) << int(finder::FindError::NoHole) << 5;
    }

    void stagesEndWhereTheFinderDid()
    {
        QFETCH(QImage, image);
        QFETCH(int, error);
        QFETCH(int, stages);
        TrialBench bench;
        bench.run(bench.image, bench.taught(), true);
        bench.run(image, bench.taught(), true);
        QTRY_COMPARE(bench.outcomes().size(), 2);
        const IModelTrial::Outcome outcome = bench.outcomes().last();
        QCOMPARE(algo(outcome).value("error").toInt(), error);
        QVERIFY2(outcome.stages.size() <= stages, "a stage of the former image is shown");
        QVERIFY(!outcome.stages.first().note.isEmpty());
        for (const TrialStage& stage : outcome.stages) {
            for (const TrialCircle& circle : stage.circles)
                QVERIFY(!circle.accepted || stage.circles.size() == 1);
        }
    }

    void parametersThatCannotBeUsedAreAnsweredWithTheReason_data()
    {
        QTest::addColumn<QVariantMap>("parameters");
        QTest::newRow("text") << QVariantMap{{"rim_radius", "wide"}};
        QTest::newRow("out of range") << QVariantMap{{"score_limit", 7.0}};
        QTest::newRow("contradiction") << QVariantMap{{"rim_radius", 400.0}, {"ring_radius", 500.0}};
        QTest::newRow("not a number") << QVariantMap{{"hole_radius", qQNaN()}};
    }

    void parametersThatCannotBeUsedAreAnsweredWithTheReason()
    {
        QFETCH(QVariantMap, parameters);
        TrialBench bench;
        bench.run(bench.image, parameters, true);
        QTRY_COMPARE(bench.outcomes().size(), 1);
        const QVariantMap answer = algo(bench.outcomes().first());
        QCOMPARE(answer.value("error").toInt(), int(finder::FindError::BadModel));
        QCOMPARE(answer.value("angle").toDouble(), 361.0);
        QVERIFY(answer.value("resultTip").toString().contains(parameters.lastKey().left(4)));
        QVERIFY(bench.outcomes().first().stages.isEmpty());
    }

    void missingParametersAreThoseOfAnyWheel()
    {
        TrialBench bench;
        bench.run(bench.image, {}, false);
        bench.run(bench.image, {}, false, QStringLiteral("工位九"));
        QTRY_COMPARE(bench.outcomes().size(), 2);
        QCOMPARE(algo(bench.outcomes()[0]).value("error"), QVariant(0));
        QVERIFY(bench.outcomes()[0].stages.isEmpty());
        QVERIFY2(!bench.outcomes()[1].result.contains("AlgoResult"), "there is no such solution");
    }

    void shutDownDuringTrialsIsPrompt()
    {
        TrialBench bench;
        for (int i = 0; i < 300; ++i)
            bench.run(bench.image, bench.taught(), true);
        QTRY_VERIFY(!bench.outcomes().isEmpty());
        bench.engine.reset();
        const int answered = bench.outcomes().size();
        QVERIFY2(answered < 300, "deleting waited for the queue");
        QCOMPARE(bench.outcomes().size(), answered);
    }
};

QTEST_GUILESS_MAIN(TrialsTest)
#include "tst_trials.moc"
