#include "SolutionStore.h"
#include "support/TempHome.h"

#include <valvecell/HomeFiles.h>

using finder::HoleModel;

namespace {

const QString solution = QStringLiteral("工位一");
const QByteArray solutionJson = QStringLiteral(R"({"name": "工位一", "result": "hub"})").toUtf8();
const QByteArray goodModel = R"({"rim_radius": 800, "ring_radius": 700, "hole_radius": 15, "taught": true})";

QString storeFolder(const TempHome& home)
{
    return home.path(QStringLiteral("/user/solutions"));
}

QString inSolution(const QString& file)
{
    return QStringLiteral("/user/solutions/工位一/") + file;
}

QVariantMap parameters(double rim)
{
    return {{QStringLiteral("rim_radius"), rim},
            {QStringLiteral("ring_radius"), 0.87 * rim},
            {QStringLiteral("hole_radius"), 14.5},
            {QStringLiteral("taught"), true}};
}

} // namespace

class SolutionsTest : public QObject
{
    Q_OBJECT

private slots:
    void modelTaughtTodayIsThereTomorrow()
    {
        const TempHome home;
        QString error;
        const QString model = QStringLiteral("17x7.5 A/B:*?");
        {
            SolutionStore store(storeFolder(home));
            store.read();
            QVERIFY(store.list().isEmpty());
            QVERIFY2(store.addSolution(solution, &error), qPrintable(error));
            QVERIFY2(store.saveModel(solution, model, parameters(800), &error), qPrintable(error));
            QVERIFY2(store.saveModel(solution, model, parameters(810), &error), qPrintable(error));
        }
        SolutionStore store(storeFolder(home));
        store.read();
        QCOMPARE(store.list(), QStringList{solution});
        QCOMPARE(store.models(solution), (QStringList{model, finder::autoModelName()}));
        const QVariantMap read = store.parameters(solution, model);
        QCOMPARE(read.value(QStringLiteral("rim_radius")).toDouble(), 810.0);
        QCOMPARE(read.value(QStringLiteral("hole_radius")).toDouble(), 14.5);
        QCOMPARE(read.value(QStringLiteral("taught")).toBool(), true);
        QVERIFY(store.removeModel(solution, model, &error));
        store.read();
        QCOMPARE(store.models(solution), QStringList{finder::autoModelName()});
    }

    void fileNamesAreSafeAndReadable_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("file");
        QTest::newRow("Chinese stays") << QStringLiteral("五辐铝轮") << QStringLiteral("五辐铝轮");
        QTest::newRow("separators") << QStringLiteral("a/b\\c") << QStringLiteral("a%2Fb%5Cc");
        QTest::newRow("inner dot") << QStringLiteral("17x7.5") << QStringLiteral("17x7.5");
        QTest::newRow("parent folder") << QStringLiteral("..") << QStringLiteral("%2E%2E");
        QTest::newRow("percent") << QStringLiteral("50%") << QStringLiteral("50%25");
        QTest::newRow("line end") << QStringLiteral("a\nb") << QStringLiteral("a%0Ab");
    }

    void fileNamesAreSafeAndReadable()
    {
        QFETCH(QString, name);
        QTEST(SolutionStore::fileName(name), "file");
    }

    void damagedModelIsLeftOutAndNamed_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        QTest::newRow("empty") << QByteArray() << QStringLiteral("line 1");
        QTest::newRow("cut") << goodModel.left(40) << QStringLiteral("line 1");
        QTest::newRow("list") << QByteArray("[1, 2]") << QStringLiteral("not an object");
        QTest::newRow("text for a number") << QByteArray(R"({"rim_radius": "800"})") << QStringLiteral("rim_radius");
        QTest::newRow("negative") << QByteArray(R"({"hole_radius": -3})") << QStringLiteral("hole_radius");
        QTest::newRow("beyond doubles") << QByteArray(R"({"ring_radius": 1e308})") << QStringLiteral("ring_radius");
        QTest::newRow("tolerance") << QByteArray(R"({"rim_radius_tol": 900})") << QStringLiteral("rim_radius_tol");
        QTest::newRow("hole on the rim") << QByteArray(R"({"rim_radius": 500, "ring_radius": 600})")
                                         << QStringLiteral("ring_radius");
        QTest::newRow("taught is a number") << QByteArray(R"({"taught": 1})") << QStringLiteral("taught");
        QTest::newRow("name of the built-in") << QByteArray(R"({"name": "auto"})") << QStringLiteral("auto");
        QTest::newRow("huge") << QByteArray(int(HomeFiles::maxFileBytes) + 1, ' ') << QStringLiteral("larger than");
    }

    void damagedModelIsLeftOutAndNamed()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        const TempHome home;
        home.write(inSolution(QStringLiteral("solution.json")), solutionJson);
        home.write(inSolution(QStringLiteral("good.model.json")), goodModel);
        home.write(inSolution(QStringLiteral("spoiled.model.json")), content);
        SolutionStore store(storeFolder(home));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("spoiled\\.model\\.json.*") + reason));
        store.read();
        QCOMPARE(store.models(solution), (QStringList{finder::autoModelName(), QStringLiteral("good")}));
        QCOMPARE(home.read(inSolution(QStringLiteral("spoiled.model.json"))), content);
    }

    void cameraOfASolutionReachesEveryModel()
    {
        const TempHome home;
        home.write(
            inSolution(QStringLiteral("solution.json")),
            R"({"camera": {"distance_mm": 1500, "principal_x": 1200.5, "principal_y": "1000", "mm_per_pixel": -1}})");
        home.write(inSolution(QStringLiteral("good.model.json")), goodModel);
        SolutionStore store(storeFolder(home));
        for (const char* wrong : {"principal_y", "mm_per_pixel"})
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("solution\\.json.*%1").arg(wrong)));
        store.read();
        for (const QString& name : {QStringLiteral("good"), finder::autoModelName()}) {
            HoleModel model;
            SolutionStore::Answer answer = SolutionStore::Answer::Hub;
            QVERIFY(store.lookUp(solution, name, &model, &answer));
            QCOMPARE(model.camera.distance, 1500.0);
            QCOMPARE(model.camera.principal, cv::Point2d(1200.5, 0));
            QCOMPARE(model.camera.pixelSize, 0.0); // unknown
        }
    }

    void damagedModelIsKeptAsideWhenTaughtAnew()
    {
        const TempHome home;
        home.write(inSolution(QStringLiteral("solution.json")), solutionJson);
        home.write(inSolution(QStringLiteral("wheel.model.json")), "{\"rim_radius\": 8");
        SolutionStore store(storeFolder(home));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("wheel\\.model\\.json")));
        store.read();
        QString error;
        QVERIFY2(store.saveModel(solution, QStringLiteral("wheel"), parameters(800), &error), qPrintable(error));
        QCOMPARE(home.keptAside(inSolution(QStringLiteral("wheel.model.json"))).size(), 1);
    }

    void damagedSolutionKeepsItsModels_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("warning");
        QTest::newRow("cut") << QByteArray("{\"name\":") << QStringLiteral("solution\\.json, line 1");
        QTest::newRow("empty") << QByteArray() << QStringLiteral("solution\\.json");
        QTest::newRow("unknown result") << QByteArray(R"({"result": "rim"})") << QStringLiteral("\"rim\"");
    }

    void damagedSolutionKeepsItsModels()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, warning);
        const TempHome home;
        home.write(inSolution(QStringLiteral("solution.json")), content);
        home.write(inSolution(QStringLiteral("good.model.json")), goodModel);
        SolutionStore store(storeFolder(home));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
        store.read();
        HoleModel model;
        SolutionStore::Answer answer = SolutionStore::Answer::Hub;
        QVERIFY(store.lookUp(solution, QStringLiteral("good"), &model, &answer));
        QCOMPARE(answer, SolutionStore::Answer::Hole);
        QCOMPARE(model.rimRadius, 800.0);
    }

    void wrongEditChangesNothing()
    {
        const TempHome home;
        SolutionStore store(storeFolder(home));
        QString error;
        const QString model = QStringLiteral("wheel");
        QVERIFY(store.addSolution(solution, &error));
        QVERIFY(store.saveModel(solution, model, parameters(800), &error));
        const QVariantMap before = store.parameters(solution, model);
        QVERIFY(!store.saveModel(solution, model, {{QStringLiteral("score_limit"), 7}}, &error));
        QVERIFY(error.contains(QStringLiteral("score_limit")));
        QCOMPARE(store.parameters(solution, model), before);
        QVERIFY(!store.saveModel(solution, finder::autoModelName(), parameters(800), &error));
        QVERIFY(!store.saveModel(QStringLiteral("?"), model, parameters(800), &error));
        QVERIFY(!store.saveModel(solution, QStringLiteral("  "), parameters(800), &error));
        QVERIFY(!store.removeModel(solution, finder::autoModelName(), &error));
        QVERIFY(!store.addSolution(solution, &error));
        QVERIFY(!store.addSolution(QString(500, QLatin1Char('x')), &error));
    }

    void fullDiskLeavesTheOldModel()
    {
        const TempHome home;
        SolutionStore store(storeFolder(home));
        QString error;
        QVERIFY(store.addSolution(solution, &error));
        // A file where the solution's folder was stands for any place that cannot be written.
        QVERIFY(QDir(storeFolder(home) + QStringLiteral("/工位一")).removeRecursively());
        home.write(QStringLiteral("/user/solutions/工位一"), "in the way");
        QVERIFY(!store.saveModel(solution, QStringLiteral("wheel"), parameters(800), &error));
        QVERIFY(error.contains(QStringLiteral("wheel.model.json")));
        QCOMPARE(store.models(solution), QStringList{finder::autoModelName()});
    }
};

QTEST_GUILESS_MAIN(SolutionsTest)
#include "tst_solutions.moc"
