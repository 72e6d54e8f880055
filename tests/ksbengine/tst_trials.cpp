#include "EngineBench.h"
#include "support/Table.h"

namespace {

struct TrialBench : EngineBench<IModelTrial::Outcome>
{
    QVariantMap taught() const { return finder::parametersOf(Wheels::model(spec)); }
    void run(const QImage& tried, const QVariantMap& parameters, bool withStages, const QString& solution)
    {
        extension<IModelTrial>()->runTrial(tried, solution, parameters, withStages, inbox.callback());
    }
    IModelTrial::Outcome outcome(const QImage& tried, const QVariantMap& parameters, bool withStages = true,
                                 const QString& solution = QStringLiteral("工位一"))
    {
        const int before = inbox.count();
        run(tried, parameters, withStages, solution);
        return inbox.next(before);
    }
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
        const QVariantMap answer = algo(outcome.result);
        QVERIFY(answer.value("mouthPixels").toInt() > 100);
        QVERIFY(answer.value("mouthSpread").toDouble() < 0.5);
        QVERIFY(answer.value("outerRadius").toDouble() >= answer.value("holeRadius").toDouble());
        QVERIFY(stage.note.contains(answer.value("mouthPixels").toString()));
    }

private slots:
    void everyStageShowsTheHoleWhereItIs()
    {
        TrialBench bench;
        const IModelTrial::Outcome outcome = bench.outcome(bench.image, bench.taught());
        QCOMPARE(algo(outcome.result).value("error"), QVariant(0));
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
        using finder::FindError;
        QImage black(1200, 900, QImage::Format_Grayscale8);
        black.fill(2);
        Table::of<QImage, int, int>(
            {{"no image", QImage(), int(FindError::BadImage), 1},
             {"black", black, int(FindError::TooDark), 1},
             {"no hole", finder::toImage(Wheels::image(Wheels::spec("five", 4, false))), int(FindError::NoHole), 5}});
    }
    void stagesEndWhereTheFinderDid()
    {
        const auto [image, error, stages] = Table::row<QImage, int, int>();
        TrialBench bench;
        bench.outcome(bench.image, bench.taught());
        const IModelTrial::Outcome outcome = bench.outcome(image, bench.taught());
        QCOMPARE(algo(outcome.result).value("error").toInt(), error);
        QVERIFY2(outcome.stages.size() <= stages, "a stage of the former image is shown");
        QVERIFY(!outcome.stages.first().note.isEmpty());
        for (const TrialStage& stage : outcome.stages) {
            for (const TrialCircle& circle : stage.circles)
                QVERIFY(!circle.accepted || stage.circles.size() == 1);
        }
    }

    void parametersThatCannotBeUsedAreAnsweredWithTheReason()
    {
        TrialBench bench;
        const IModelTrial::Outcome outcome = bench.outcome(bench.image, {{"score_limit", 7.0}});
        const QVariantMap answer = algo(outcome.result);
        QCOMPARE(answer.value("error").toInt(), int(finder::FindError::BadModel));
        QCOMPARE(answer.value("angle").toDouble(), 361.0);
        QVERIFY(answer.value("resultTip").toString().contains("score_limit"));
        QVERIFY(outcome.stages.isEmpty());
    }

    void missingParametersAreThoseOfAnyWheel()
    {
        TrialBench bench;
        const IModelTrial::Outcome outcome = bench.outcome(bench.image, {}, false);
        QCOMPARE(algo(outcome.result).value("error"), QVariant(0));
        QVERIFY(outcome.stages.isEmpty());
        const QVariantMap nowhere = bench.outcome(bench.image, {}, false, QStringLiteral("工位九")).result;
        QVERIFY2(!nowhere.isEmpty() && !nowhere.contains("AlgoResult"), "there is no such solution");
    }

    void shutDownDuringTrialsIsPrompt()
    {
        TrialBench bench;
        for (int i = 0; i < 300; ++i)
            bench.run(bench.image, bench.taught(), true, bench.stationOne);
        QTRY_VERIFY(!bench.inbox.all().isEmpty());
        bench.engine.reset();
        const int answered = bench.inbox.all().size();
        QVERIFY2(answered < 300, "deleting waited for the queue");
        QCOMPARE(bench.inbox.all().size(), answered);
    }
};

QTEST_GUILESS_MAIN(TrialsTest)
#include "tst_trials.moc"
