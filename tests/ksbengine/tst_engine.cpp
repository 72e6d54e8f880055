#include "EngineBench.h"
#include "support/Table.h"

namespace {

const QString stationTwo = QStringLiteral("工位二");
const QString taughtModel = QStringLiteral("五辐铝轮");
const QString wrongModel = QStringLiteral("untaught");

int numberOf(const QVariantMap& result)
{
    return result.value(ResultKeys::originImage).value<QImage>().text(QStringLiteral("number")).toInt();
}

/// Two solutions, of which the first has a taught and an untaught model.
struct Plant : EngineBench<QVariantMap>
{
    Plant()
    {
        auto* store = extension<ISolutionStore>();
        QString error;
        QVariantMap parameters = finder::parametersOf(Wheels::model(spec));
        store->addSolution(stationTwo, &error);
        store->saveModel(stationOne, taughtModel, parameters, &error);
        parameters[QStringLiteral("taught")] = false;
        store->saveModel(stationOne, wrongModel, parameters, &error);
    }
    /// The wheel's image, marked by a number.
    void run(int number, const QString& solution, const QString& model, const IEngine::ResultCallback& callback) const
    {
        QImage marked = image;
        marked.setText(QStringLiteral("number"), QString::number(number));
        engine->runTask({{QString::fromLatin1(ResultKeys::originImage), marked}}, solution, model, callback);
    }
    QVariantMap answer(const QString& solution, const QString& model)
    {
        const int before = inbox.count();
        run(0, solution, model, inbox.callback());
        return inbox.next(before);
    }
};

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

class EngineTest : public QObject
{
    Q_OBJECT

private slots:
    void wheelIsAnsweredWithTheWholeMap()
    {
        Plant plant;
        QCOMPARE(plant.engine->taskList()->list(), (QStringList{plant.stationOne, stationTwo}));
        const QVariantMap result = plant.answer(plant.stationOne, taughtModel);
        QCOMPARE(result.value("originImage").value<QImage>(), plant.image);
        QCOMPARE(result.value("taskCali"), QVariant(true));
        QCOMPARE(result.value("solutionName").toString(), plant.stationOne);
        QCOMPARE(result.value("taskName").toString(), taughtModel);
        QVERIFY(result.value("tasktime").toDouble() > 0);
        const QVariantMap found = algo(result);
        QCOMPARE(found.value("error"), QVariant(0));
        QVERIFY(Wheels::turnBetween(found.value("angle").toDouble(), plant.truth.angle) < 0.1);
        QVERIFY(apart(found.value("centerPoint").toPointF(), plant.truth.holeCenter) < 1);
        QVERIFY(found.value("score").toDouble() > 0.5 && !found.value("resultTip").toString().isEmpty());
        const QImage picture = found.value("image").value<QImage>();
        QCOMPARE(picture.size(), plant.image.size());
        const QColor atHub = picture.pixelColor(qRound(plant.truth.hub.x), qRound(plant.truth.hub.y));
        QVERIFY2(atHub.red() != atHub.blue(), "the hub centre is not drawn");
        QCOMPARE(plant.answer(plant.stationOne, wrongModel).value("taskCali"), QVariant(false));
    }

    void hubSolutionAnswersTheHubCentre()
    {
        Plant plant;
        plant.home.write(QStringLiteral("/user/solutions/工位二/solution.json"),
                         QStringLiteral(R"({"name": "工位二", "result": "hub"})").toUtf8());
        plant.engine->initialise();
        const QVariantMap result = plant.answer(stationTwo, finder::autoModelName());
        QCOMPARE(result.value("taskCali"), QVariant(true));
        QVERIFY(apart(algo(result).value("centerPoint").toPointF(), plant.truth.hub) < 1);

        plant.home.write(QStringLiteral("/user/solutions/工位二/solution.json"), "{\"name\": \"工位二\", \"res");
        plant.engine->initialise(); // nobody knows any more which point was meant
        const QVariantMap refused = algo(plant.answer(stationTwo, finder::autoModelName()));
        QCOMPARE(refused.value("angle").toDouble(), 361.0);
        QVERIFY(refused.value("resultTip").toString().contains("solution.json"));
    }

    void taskThatCannotRunIsAnsweredAllTheSame()
    {
        Plant plant;
        const QVector<QPair<QString, QString>> unknown{{"工位九", taughtModel}, {stationTwo, taughtModel}, {"", ""}};
        for (const auto& [solution, model] : unknown) {
            const QVariantMap result = plant.answer(solution, model);
            QVERIFY(result.contains("solutionName") && !result.contains("AlgoResult"));
            QCOMPARE(result.value("solutionName").toString(), solution);
            QCOMPARE(result.value("taskName").toString(), model);
        }
        plant.engine->runTask({}, plant.stationOne, taughtModel, plant.inbox.callback());
        const QVariantMap found = algo(plant.inbox.next(unknown.size()));
        QCOMPARE(found.value("angle").toDouble(), 361.0);
        QCOMPARE(found.value("error").toInt(), static_cast<int>(finder::FindError::BadImage));
    }

    void resultsOfOneStationStayInOrderWhileBothRun()
    {
        Plant plant;
        Inbox<QVariantMap> other;
        constexpr int parts = 15;
        for (int i = 0; i < parts; ++i) {
            plant.run(i, plant.stationOne, i % 3 ? taughtModel : QStringLiteral("gone"), plant.inbox.callback());
            plant.run(i, stationTwo, finder::autoModelName(), other.callback());
        }
        QTRY_COMPARE(plant.inbox.count() + other.count(), 2 * parts);
        for (int i = 0; i < parts; ++i) {
            QCOMPARE(numberOf(plant.inbox.all()[i]), i);
            QCOMPARE(numberOf(other.all()[i]), i);
        }
    }

    void busyStationDoesNotHoldUpTheOther()
    {
        Plant plant;
        std::mutex gate;
        gate.lock();
        Inbox<QVariantMap> first;
        plant.run(0, plant.stationOne, taughtModel, [&](const QVariantMap& result) {
            const std::lock_guard<std::mutex> wait(gate);
            first.callback()(result);
        });
        plant.run(0, stationTwo, finder::autoModelName(), plant.inbox.callback());
        QTRY_COMPARE(plant.inbox.count(), 1);
        QCOMPARE(first.count(), 0);
        gate.unlock();
        QTRY_COMPARE(first.count(), 1);
    }

    void modelDeletedWhileItRunsFinishesItsTasks()
    {
        Plant plant;
        QString error;
        for (int i = 0; i < 5; ++i)
            plant.run(i, plant.stationOne, taughtModel, plant.inbox.callback());
        QVERIFY(plant.extension<ISolutionStore>()->removeModel(plant.stationOne, taughtModel, &error));
        plant.run(5, plant.stationOne, taughtModel, plant.inbox.callback());
        QTRY_COMPARE(plant.inbox.count(), 6);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(algo(plant.inbox.all()[i]).value("error"), QVariant(0));
        QVERIFY(!plant.inbox.all()[5].contains("AlgoResult"));
    }

    void shutDownWithTasksQueuedIsPrompt()
    {
        Plant plant;
        std::mutex gate;
        gate.lock();
        plant.run(0, plant.stationOne, taughtModel, [&](const QVariantMap& result) {
            const std::lock_guard<std::mutex> wait(gate);
            plant.inbox.callback()(result);
        });
        for (int i = 0; i < 200; ++i)
            plant.run(i, plant.stationOne, taughtModel, plant.inbox.callback());
        // The first task is still in hand when the engine is told to go; it finishes, and none of the others begins.
        std::thread closer([&] { plant.engine.reset(); });
        gate.unlock();
        closer.join();
        const int answered = plant.inbox.count();
        QVERIFY2(answered < 201, "deleting waited for the queue");
        QCOMPARE(plant.inbox.count(), answered);
    }

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

    void parametersAreThoseOfAnyWheelOrRefusedWithTheReason()
    {
        TrialBench bench;
        const IModelTrial::Outcome missing = bench.outcome(bench.image, {}, false);
        QCOMPARE(algo(missing.result).value("error"), QVariant(0));
        const IModelTrial::Outcome wrong = bench.outcome(bench.image, {{"score_limit", 7.0}});
        const QVariantMap answer = algo(wrong.result);
        QCOMPARE(answer.value("error").toInt(), int(finder::FindError::BadModel));
        QCOMPARE(answer.value("angle").toDouble(), 361.0);
        QVERIFY(answer.value("resultTip").toString().contains("score_limit"));
        QVERIFY(missing.stages.isEmpty() && wrong.stages.isEmpty());
        const QVariantMap nowhere = bench.outcome(bench.image, {}, false, QStringLiteral("工位九")).result;
        QVERIFY2(!nowhere.isEmpty() && !nowhere.contains("AlgoResult"), "there is no such solution");
    }
};

QTEST_GUILESS_MAIN(EngineTest)
#include "tst_engine.moc"
