#include "SolutionStore.h"
#include "support/Table.h"
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

    void fileNamesAreSafeAndReadable()
    {
        const QVector<QPair<QString, QString>> files{{"五辐铝轮", "五辐铝轮"}, {"a/b\\c", "a%2Fb%5Cc"},
                                                     {"17x7.5", "17x7.5"},     {"..", "%2E%2E"},
                                                     {"50%", "50%25"},         {"a\nb", "a%0Ab"}};
        for (const auto& [name, file] : files)
            QCOMPARE(SolutionStore::fileName(name), file);
    }

    void damagedFileIsNamedAndTheOthersAreRead_data()
    {
        const QByteArray solutionFile = "solution.json", model = "wheel.model.json";
        Table::of<QByteArray, QByteArray, QString>(
            {{"solution cut", solutionFile, "{\"name\":", "line 1"},
             {"solution empty", solutionFile, "", ""},
             {"solution of unknown result", solutionFile, R"({"result": "rim"})", "\"rim\""},
             {"result that is no text", solutionFile, R"({"result": 2})", "\"2\""},
             {"model empty", model, "", "line 1"},
             {"model cut", model, "{\"rim_radius\": 8", "line 1"},
             {"model is a list", model, "[1, 2]", "not an object"},
             {"text for a number", model, R"({"rim_radius": "800"})", "rim_radius"},
             {"name of the built-in", model, R"({"name": "auto"})", "auto"},
             {"huge", model, QByteArray(int(HomeFiles::maxFileBytes) + 1, ' '), "larger than"}});
    }
    void damagedFileIsNamedAndTheOthersAreRead()
    {
        const auto [file, content, reason] = Table::row<QByteArray, QByteArray, QString>();
        const TempHome home;
        home.write(inSolution(QStringLiteral("solution.json")), solutionJson);
        home.write(inSolution(QStringLiteral("good.model.json")), goodModel);
        home.write(inSolution(file), content);
        SolutionStore store(storeFolder(home));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(file) + ".*" + reason));
        store.read();
        QCOMPARE(store.models(solution), (QStringList{finder::autoModelName(), QStringLiteral("good")}));
        QCOMPARE(home.read(inSolution(file)), content);
        HoleModel model;
        SolutionStore::Answer answer{};
        QVERIFY(store.lookUp(solution, QStringLiteral("good"), &model, &answer));
        QCOMPARE(answer, file == "solution.json" ? SolutionStore::Answer::Hole : SolutionStore::Answer::Hub);
        QCOMPARE(model.rimRadius, 800.0);
        QCOMPARE(store.trouble(solution).contains("solution.json"), file == "solution.json");
        QString error;
        QVERIFY2(store.saveModel(solution, QStringLiteral("wheel"), parameters(800), &error), qPrintable(error));
        QVERIFY(!content.endsWith("8") || home.keptAside(inSolution(QStringLiteral("wheel.model.json"))).size() == 1);
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
        // A file where the solution's folder was stands for any place that cannot be written.
        QVERIFY(QDir(storeFolder(home) + QStringLiteral("/工位一")).removeRecursively());
        home.write(QStringLiteral("/user/solutions/工位一"), "in the way");
        QVERIFY(!store.saveModel(solution, model, parameters(810), &error));
        QVERIFY2(error.contains(QStringLiteral("wheel.model.json")), qPrintable(error));
        QCOMPARE(store.parameters(solution, model), before);
    }
};

QTEST_GUILESS_MAIN(SolutionsTest)
#include "tst_solutions.moc"
