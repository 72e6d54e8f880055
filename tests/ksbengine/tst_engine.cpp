#include "Engine.h"
#include "Wheels.h"
#include "support/TempHome.h"

#include <valvecell/Extension.h>
#include <valvecell/ResultKeys.h>

#include <mutex>

namespace {

const QString stationOne = QStringLiteral("工位一");
const QString stationTwo = QStringLiteral("工位二");
const QString taughtModel = QStringLiteral("五辐铝轮");
const QString wrongModel = QStringLiteral("untaught");

/// Receives results on the engine's threads.
class Inbox
{
public:
    IEngine::ResultCallback callback()
    {
        return [this](const QVariantMap& result) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_results.append(result);
        };
    }

    QList<QVariantMap> results() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_results;
    }

    int count() const { return results().size(); }

private:
    mutable std::mutex m_mutex;
    QList<QVariantMap> m_results;
};

QVariantMap inputOf(const QImage& image, int number = 0)
{
    QImage marked = image;
    marked.setText(QStringLiteral("number"), QString::number(number));
    return {{QString::fromLatin1(ResultKeys::originImage), marked}};
}

int numberOf(const QVariantMap& result)
{
    return result.value(ResultKeys::originImage).value<QImage>().text(QStringLiteral("number")).toInt();
}

QVariantMap algo(const QVariantMap& result)
{
    return result.value(ResultKeys::algoResult).toMap();
}

/// An engine with two solutions; the first has a taught and an untaught model.
class Plant
{
public:
    Plant()
        : spec(Wheels::spec())
        , truth(wheel::truthOf(spec))
        , image(finder::toImage(Wheels::image(spec)))
        , engine(std::make_unique<Engine>(home.path(QStringLiteral("/user/solutions"))))
    {
        QString error;
        QVariantMap parameters = finder::parametersOf(Wheels::model(spec));
        store()->addSolution(stationOne, &error);
        store()->addSolution(stationTwo, &error);
        store()->saveModel(stationOne, taughtModel, parameters, &error);
        parameters[QStringLiteral("taught")] = false;
        store()->saveModel(stationOne, wrongModel, parameters, &error);
        engine->initialise();
    }

    ISolutionStore* store() const { return extensionOf<ISolutionStore>(static_cast<IEngine*>(engine.get())); }

    TempHome home;
    wheel::WheelSpec spec;
    wheel::WheelTruth truth;
    QImage image;
    Inbox inbox;
    std::unique_ptr<Engine> engine;
};

} // namespace

class EngineTest : public QObject
{
    Q_OBJECT

private slots:
    void wheelIsAnsweredWithTheWholeMap()
    {
        Plant plant;
        QCOMPARE(plant.engine->taskList()->list(), (QStringList{stationOne, stationTwo}));
        const QVariantMap input{{QString::fromLatin1(ResultKeys::originImage), plant.image}};
        plant.engine->runTask(input, stationOne, taughtModel, plant.inbox.callback());
        QTRY_COMPARE(plant.inbox.count(), 1);
        const QVariantMap result = plant.inbox.results().first();
        QCOMPARE(result.value("originImage").value<QImage>(), plant.image);
        QCOMPARE(result.value("taskCali"), QVariant(true));
        QCOMPARE(result.value("solutionName").toString(), stationOne);
        QCOMPARE(result.value("taskName").toString(), taughtModel);
        QVERIFY(result.value("tasktime").toDouble() > 0);
        const QVariantMap found = algo(result);
        QCOMPARE(found.value("error"), QVariant(0));
        QVERIFY(Wheels::turnBetween(found.value("angle").toDouble(), plant.truth.angle) < 0.1);
        const QPointF center = found.value("centerPoint").toPointF();
        QVERIFY(std::hypot(center.x() - plant.truth.holeCenter.x, center.y() - plant.truth.holeCenter.y) < 1);
        QVERIFY(found.value("score").toDouble() > 0.5);
        QVERIFY(!found.value("resultTip").toString().isEmpty());
        const QImage picture = found.value("image").value<QImage>();
        QCOMPARE(picture.size(), plant.image.size());
        const QColor atHub = picture.pixelColor(qRound(plant.truth.hub.x), qRound(plant.truth.hub.y));
        QVERIFY2(atHub.red() != atHub.blue(), "the hub centre is not drawn");
    }

    void hubSolutionAnswersTheHubCentre()
    {
        Plant plant;
        plant.home.write(QStringLiteral("/user/solutions/工位二/solution.json"),
                         QStringLiteral(R"({"name": "工位二", "result": "hub"})").toUtf8());
        plant.engine->initialise();
        plant.engine->runTask(inputOf(plant.image), stationTwo, finder::autoModelName(), plant.inbox.callback());
        QTRY_COMPARE(plant.inbox.count(), 1);
        const QPointF center = algo(plant.inbox.results().first()).value("centerPoint").toPointF();
        QVERIFY(std::hypot(center.x() - plant.truth.hub.x, center.y() - plant.truth.hub.y) < 1);
    }

    void taskThatCannotRunAnswersWithoutAlgoResult_data()
    {
        QTest::addColumn<QString>("solution");
        QTest::addColumn<QString>("model");
        QTest::newRow("unknown solution") << QStringLiteral("工位九") << taughtModel;
        QTest::newRow("unknown model") << stationTwo << taughtModel;
        QTest::newRow("no names") << QString() << QString();
    }

    void taskThatCannotRunAnswersWithoutAlgoResult()
    {
        QFETCH(QString, solution);
        QFETCH(QString, model);
        Plant plant;
        plant.engine->runTask(inputOf(plant.image), solution, model, plant.inbox.callback());
        QTRY_COMPARE(plant.inbox.count(), 1);
        const QVariantMap result = plant.inbox.results().first();
        QVERIFY(!result.contains("AlgoResult"));
        QCOMPARE(result.value("solutionName").toString(), solution);
        QCOMPARE(result.value("taskName").toString(), model);
    }

    void untaughtModelSaysSo()
    {
        Plant plant;
        plant.engine->runTask(inputOf(plant.image), stationOne, wrongModel, plant.inbox.callback());
        plant.engine->runTask(inputOf(plant.image), stationOne, finder::autoModelName(), plant.inbox.callback());
        QTRY_COMPARE(plant.inbox.count(), 2);
        QCOMPARE(plant.inbox.results()[0].value("taskCali"), QVariant(false));
        QCOMPARE(plant.inbox.results()[1].value("taskCali"), QVariant(true));
    }

    void missingImageIsAnErrorNotACrash()
    {
        Plant plant;
        plant.engine->runTask({}, stationOne, taughtModel, plant.inbox.callback());
        QTRY_COMPARE(plant.inbox.count(), 1);
        const QVariantMap found = algo(plant.inbox.results().first());
        QCOMPARE(found.value("angle").toDouble(), 361.0);
        QCOMPARE(found.value("error").toInt(), static_cast<int>(finder::FindError::BadImage));
    }

    void resultsOfOneStationStayInOrderWhileBothRun()
    {
        Plant plant;
        Inbox other;
        constexpr int parts = 40;
        for (int i = 0; i < parts; ++i) {
            plant.engine->runTask(inputOf(plant.image, i), stationOne, i % 3 ? taughtModel : QStringLiteral("gone"),
                                  plant.inbox.callback());
            plant.engine->runTask(inputOf(plant.image, i), stationTwo, finder::autoModelName(), other.callback());
        }
        QTRY_COMPARE(plant.inbox.count() + other.count(), 2 * parts);
        for (int i = 0; i < parts; ++i) {
            QCOMPARE(numberOf(plant.inbox.results()[i]), i);
            QCOMPARE(numberOf(other.results()[i]), i);
        }
    }

    void busyStationDoesNotHoldUpTheOther()
    {
        Plant plant;
        std::mutex gate;
        gate.lock();
        Inbox first;
        plant.engine->runTask(inputOf(plant.image), stationOne, taughtModel, [&](const QVariantMap& result) {
            const std::lock_guard<std::mutex> wait(gate);
            first.callback()(result);
        });
        plant.engine->runTask(inputOf(plant.image), stationTwo, finder::autoModelName(), plant.inbox.callback());
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
            plant.engine->runTask(inputOf(plant.image, i), stationOne, taughtModel, plant.inbox.callback());
        QVERIFY(plant.store()->removeModel(stationOne, taughtModel, &error));
        plant.engine->runTask(inputOf(plant.image, 5), stationOne, taughtModel, plant.inbox.callback());
        QTRY_COMPARE(plant.inbox.count(), 6);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(algo(plant.inbox.results()[i]).value("error"), QVariant(0));
        QVERIFY(!plant.inbox.results()[5].contains("AlgoResult"));
    }

    void shutDownWithAThousandTasksQueuedIsPrompt()
    {
        Plant plant;
        std::mutex gate;
        gate.lock();
        plant.engine->runTask(inputOf(plant.image), stationOne, taughtModel, [&](const QVariantMap& result) {
            const std::lock_guard<std::mutex> wait(gate);
            plant.inbox.callback()(result);
        });
        for (int i = 0; i < 1000; ++i)
            plant.engine->runTask(inputOf(plant.image, i), stationOne, taughtModel, plant.inbox.callback());
        // The first task is still in hand when the engine is told to go; it finishes, and none of the others begins.
        std::thread closer([&] { plant.engine.reset(); });
        gate.unlock();
        closer.join();
        const int answered = plant.inbox.count();
        QVERIFY2(answered < 1001, "deleting waited for the queue");
        QCOMPARE(plant.inbox.count(), answered);
    }
};

QTEST_GUILESS_MAIN(EngineTest)
#include "tst_engine.moc"
