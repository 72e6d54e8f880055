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

private slots:
    void everyStageShowsTheHoleWhereItIs()
    {
        TrialBench bench;
        const IModelTrial::Outcome outcome = bench.outcome(bench.image, bench.taught());
        const QVariantMap answer = algo(outcome.result);
        QCOMPARE(answer.value("error"), QVariant(0));
        QCOMPARE(outcome.stages.size(), 6);
        for (const TrialStage& stage : outcome.stages)
            QVERIFY(!stage.title.isEmpty() && !stage.note.isEmpty());
        // How far a stage's points lie from its first circle, in radii.
        const auto pointsLie = [&outcome](int stage, double from, double to) {
            const TrialCircle& circle = outcome.stages[stage].circles[0];
            QVERIFY(outcome.stages[stage].points.size() >= 10 && circle.accepted);
            for (const QPointF& point : outcome.stages[stage].points) {
                const double radii = apart(point, {circle.center.x(), circle.center.y()}) / circle.radius;
                QVERIFY2(radii >= from && radii <= to, qPrintable(QString::number(radii)));
            }
        };
        QVERIFY(apart(outcome.stages[0].circles[0].center, bench.truth.hub) < 1);
        pointsLie(0, 0.97, 1.03);
        QVERIFY(apart(outcome.stages[2].circles[0].center, bench.truth.holeCenter) < 3);
        QVERIFY(outcome.stages[2].circles[0].label.toDouble() > 0.5);
        pointsLie(3, 0.6, 1.4);
        QCOMPARE(outcome.stages[4].points.size(), outcome.stages[3].points.size());
        for (const QPointF& point : outcome.stages[4].points)
            QVERIFY(outcome.stages[4].picture.rect().contains(point.toPoint()));
        pointsLie(5, 0, 1.01);
        for (const int unwrapped : {1, 5}) {
            const TrialStage& stage = outcome.stages[unwrapped];
            QVERIFY2(qGray(stage.picture.pixel(stage.circles[0].center.toPoint())) < 60,
                     "dark where the hole shall be");
        }
        QVERIFY(answer.value("mouthPixels").toInt() > 100 && answer.value("mouthSpread").toDouble() < 0.5);
        QVERIFY(outcome.stages[5].note.contains(answer.value("mouthPixels").toString()));
    }

    void stagesEndWhereTheFinderDid_data()
    {
        using finder::FindError;
        Table::of<QImage, int, int>(
            {{"no image", QImage(), int(FindError::BadImage), 1},
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
};

QTEST_GUILESS_MAIN(TrialsTest)
#include "tst_trials.moc"
