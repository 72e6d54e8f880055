#include "Bench.h"
#include "support/TempHome.h"

class DesignerModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void wrongValueIsToldWhileItIsTyped_data()
    {
        Table::of<QByteArray, QString, QByteArray, QString>(
            {{"no number", "rim_radius", "12x", "rim_radius", "请输入数字"},
             {"negative", "hole_radius", "-3", "hole_radius", "应在 0 到 2000"},
             {"empty score", "score_limit", "", "score_limit", "请输入数字"},
             {"score in percent", "score_limit", "50", "score_limit", "0 到 1"},
             {"hole behind the wheel", "hole_depth", "301", "hole_depth", "应在 -300 到 300"},
             {"hole before the rim", "hole_depth", "-12.5", "hole_depth", ""},
             {"no tolerance", "ring_radius_tol", "0", "ring_radius", "公差"},
             {"ring outside the rim", "ring_radius", "812.5", "ring_radius", "应小于轮缘半径"},
             {"rim inside the ring", "rim_radius", "600", "ring_radius", "应小于轮缘半径"},
             {"hole as large as the wheel", "hole_radius", "400", "hole_radius", "一半"},
             {"unknown radius", "rim_radius", "", "rim_radius", ""}});
    }
    void wrongValueIsToldWhileItIsTyped()
    {
        const auto [field, typed, line, problem] = Table::row<QByteArray, QString, QByteArray, QString>();
        Bench bench;
        bench.openAt(1);
        bench.type(field, typed);
        const QString shown = bench.text(line + "_hint");
        QVERIFY2(problem.isEmpty() ? !shown.contains("应") : shown.contains(problem), qPrintable(shown));
        QCOMPARE(bench.canPress("saveButton"), problem.isEmpty());
    }

    void editedModelIsSavedWithItsUntouchedDigits()
    {
        Bench bench;
        bench.engine.solutions["工位1"]["轮毂17寸"]["ring_radius"] = 604.123456789;
        bench.openAt(1);
        QCOMPARE(bench.typed("ring_radius"), "604.123");
        bench.type("rim_radius", "820.25");
        QCOMPARE(bench.text("rim_radius_hint"), "722 – 919 px");
        bench.act({"taught", "rim_radius_tol=60"});
        bench.engine.refusal = "rim_radius_tol must be a number from 0.1 to 50";
        bench.press("saveButton");
        QCOMPARE(bench.text("status"), "未能保存“轮毂17寸”：“轮缘半径的公差” must be a number from 0.1 to 50");
        QVERIFY(bench.text("rim_radius_hint").contains("引擎不接受"));
        QVERIFY(bench.typed("rim_radius_tol") == "60" && bench.canPress("saveButton"));
        bench.engine.refusal.clear();
        bench.act({"rim_radius_tol=12", "saveButton"});
        const QVariantMap saved = bench.engine.solutions["工位1"]["轮毂17寸"];
        QCOMPARE(told(saved["rim_radius"].toDouble(), saved["ring_radius"].toDouble()), "820.25|604.123456789");
        QCOMPARE(saved["taught"], QVariant(false));
        QVERIFY(!bench.canPress("saveButton") && bench.text("status").contains("已保存"));
    }

    void calibratedStationTakesMillimetres_data()
    {
        const QByteArray scale = R"({"station_solution_1": "工位1", "StationScale_1": 0.25})";
        const QByteArray affine = R"({"station_solution_2": "工位1", "use4pointstand": true, "StationScale_2": 9,
            "station2_4p": {"m11": 0, "m21": 0.25, "dx": 7, "m12": -0.25, "m22": 0, "dy": 3}})";
        Table::of<QByteArray, QString, QString>(
            {{"two points", scale, "150 mm", "582 – 618 px\n145.5 – 154.5 mm"},
             {"four points", affine, "150mm", "582 – 618 px\n145.5 – 154.5 mm"},
             {"not calibrated", "{}", "600", "582 – 618 px"},
             {"millimetres of an uncalibrated station", "{}", "150 mm", "请输入数字"}});
    }
    void calibratedStationTakesMillimetres()
    {
        const auto [config, typed, hint] = Table::row<QByteArray, QString, QString>();
        const TempHome home;
        home.write(QStringLiteral("/user/globalConfig.json"), config);
        Bench bench;
        bench.openAt(1);
        bench.type("ring_radius", typed);
        QCOMPARE(bench.text("ring_radius_hint"), hint);
        QCOMPARE(bench.typed("ring_radius"), typed);
    }

    void unsavedChangesStayVisibleWhileOtherModelsAreLookedAt()
    {
        Bench bench;
        bench.openAt(1);
        bench.type("hole_radius", "15x");
        bench.choose(2);
        QCOMPARE(bench.rows(), QStringList({"auto（内置，只读）", "轮毂17寸 *未保存", "轮毂19寸"}));
        QVERIFY(bench.designer.window()->isWindowModified());
        bench.choose(1);
        QCOMPARE(bench.typed("hole_radius"), "15x");
        bench.type("hole_radius", "14.25");
        QVERIFY2(!bench.designer.window()->isWindowModified(), "typed back to what is stored");
        bench.act({"hole_radius=15", "revertButton"});
        QCOMPARE(bench.typed("hole_radius"), "14.25");
    }

    void renamedModelTakesItsUnsavedChangesAlong()
    {
        Bench bench;
        bench.openAt(1);
        bench.act({"hole_radius=15", "renameButton"});
        auto* ask = bench.get<QWidget>("ModelPanel")->findChild<QWidget*>("ask");
        for (const QString& name : QStringList{"轮毂19寸", "", " 轮毂", "轮毂17寸"}) {
            ask->findChild<QLineEdit*>("answerEdit")->setText(name);
            QVERIFY2(!ask->findChild<QPushButton*>("firstAnswer")->isEnabled(), qPrintable(name));
            QVERIFY(!ask->findChild<QLabel*>("answerProblem")->text().isEmpty());
        }
        QTest::keyClick(ask->findChild<QLineEdit*>("answerEdit"), Qt::Key_Escape);
        QVERIFY(ask->isHidden());
        bench.engine.undeletable = "轮毂17寸";
        bench.press("renameButton");
        bench.accept("ModelPanel", "轮毂18寸");
        QVERIFY(bench.text("status").contains("Permission denied"));
        QCOMPARE(bench.engine.solutions["工位1"].keys(), QStringList({"auto", "轮毂17寸", "轮毂19寸"}));
        bench.engine.undeletable.clear();
        bench.press("renameButton");
        bench.accept("ModelPanel", "轮毂18寸");
        QCOMPARE(bench.rows(), QStringList({"auto（内置，只读）", "轮毂18寸 *未保存", "轮毂19寸"}));
        QCOMPARE(bench.typed("hole_radius"), "15");
        QCOMPARE(bench.engine.solutions["工位1"]["轮毂18寸"]["hole_radius"].toDouble(), 14.25);
    }

    void modelsComeAndGo()
    {
        Bench bench;
        bench.openAt(0); // the built-in one can be copied, but not changed
        QVERIFY(bench.get<QLineEdit>("rim_radius")->isReadOnly() && !bench.get<QWidget>("taught")->isEnabled());
        QVERIFY(!bench.canPress("renameButton") && !bench.canPress("removeButton"));
        bench.press("copyButton");
        bench.accept("ModelPanel");
        QCOMPARE(bench.text("title"), "auto 副本");
        bench.act({"hole_radius=15", "removeButton"});
        QCOMPARE(bench.engine.solutions["工位1"].size(), 4); // only after the question
        bench.accept("ModelPanel");
        QCOMPARE(bench.engine.solutions["工位1"].keys(), QStringList({"auto", "轮毂17寸", "轮毂19寸"}));
        QVERIFY2(!bench.designer.window()->isWindowModified(), "the changes went with the model");
        bench.press("addButton");
        bench.accept("ModelPanel", "轮毂21寸");
        QCOMPARE(bench.text("title"), "轮毂21寸");
        QCOMPARE(bench.engine.solutions["工位1"]["轮毂21寸"]["taught"], QVariant(false));
        bench.press("addSolutionButton");
        bench.accept("ModelPanel", "工位3");
        QCOMPARE(bench.get<QComboBox>("solutionBox")->currentText(), "工位3");
        QVERIFY(bench.rows().isEmpty() && bench.text("title") == "未选择型号");
    }

    void closingWithUnsavedChangesAsks()
    {
        Bench bench;
        bench.openAt(1);
        bench.type("hole_radius", "15");
        bench.designer.window()->close();
        QVERIFY(bench.designer.window()->isVisible());
        bench.engine.refusal = "disk full";
        bench.accept("DesignerWindow");
        QVERIFY2(bench.designer.window()->isVisible(), "what cannot be saved is not lost");
        QVERIFY(bench.text("status").contains("disk full"));
        bench.engine.refusal.clear();
        bench.designer.window()->close();
        bench.accept("DesignerWindow");
        QVERIFY(!bench.designer.window()->isVisible());
        QCOMPARE(bench.engine.solutions["工位1"]["轮毂17寸"]["hole_radius"].toDouble(), 15.0);
    }

    void modelChangedElsewhereIsSeenWhenTheWindowOpensAgain()
    {
        Bench bench;
        bench.openAt(2);
        bench.designer.window()->close();
        bench.engine.solutions["工位1"].remove("轮毂17寸");
        bench.engine.solutions["工位1"]["轮毂19寸"]["rim_radius"] = 910.0;
        bench.designer.openDesigner(nullptr);
        QCOMPARE(bench.rows(), QStringList({"auto（内置，只读）", "轮毂19寸"}));
        QCOMPARE(told(bench.text("title"), bench.typed("rim_radius")), "轮毂19寸|910");
    }

    void parametersOfAnotherEngineAreShownByTheirNames()
    {
        Bench bench;
        bench.engine.solutions["工位2"]["别家"] = {{"depth", 3.5}, {"depth_tol", 5.0}, {"mirrored", true}};
        bench.open();
        bench.get<QComboBox>("solutionBox")->setCurrentText("工位2");
        bench.choose(1);
        bench.act({"depth=4", "mirrored", "saveButton"});
        QCOMPARE(bench.engine.solutions["工位2"]["别家"],
                 QVariantMap({{"depth", 4.0}, {"depth_tol", 5.0}, {"mirrored", false}}));
    }

    void engineWithoutSolutionStoreIsExplained()
    {
        Bench bench;
        bench.engine.hasStore = false;
        bench.open();
        QVERIFY(bench.get<QLabel>("missingLabel")->isVisible());
        QVERIFY(bench.text("missingLabel").contains("工位1、工位2"));
        Designer orphan;
        orphan.openDesigner(nullptr);
        QVERIFY(orphan.window()->isVisible());
    }
};

QTEST_MAIN(DesignerModelsTest)
#include "tst_designermodels.moc"
