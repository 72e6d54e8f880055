#include "Bench.h"
#include "support/TempHome.h"

class DesignerModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void wrongValueIsToldWhileItIsTyped_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("problem");
        QTest::newRow("no number") << QByteArray("rim_radius") << "12x" << QByteArray("rim_radius") << "请输入数字";
        QTest::newRow("not finite") << QByteArray("rim_radius") << "inf" << QByteArray("rim_radius") << "请输入数字";
        QTest::newRow("negative") << QByteArray("hole_radius") << "-3" << QByteArray("hole_radius") << "应在 0 到 2000";
        QTest::newRow("empty score") << QByteArray("score_limit") << "" << QByteArray("score_limit") << "请输入数字";
        QTest::newRow("score in percent") << QByteArray("score_limit") << "50" << QByteArray("score_limit") << "0 到 1";
        QTest::newRow("no tolerance") << QByteArray("ring_radius_tol") << "0" << QByteArray("ring_radius") << "公差";
        QTest::newRow("ring outside the rim")
            << QByteArray("ring_radius") << "812.5" << QByteArray("ring_radius") << "应小于轮缘半径";
        QTest::newRow("rim inside the ring")
            << QByteArray("rim_radius") << "600" << QByteArray("ring_radius") << "应小于轮缘半径";
        QTest::newRow("hole as large as the wheel")
            << QByteArray("hole_radius") << "400" << QByteArray("hole_radius") << "一半";
        QTest::newRow("good") << QByteArray("rim_radius") << "820.25" << QByteArray("rim_radius") << "";
        QTest::newRow("unknown radius") << QByteArray("rim_radius") << "" << QByteArray("rim_radius") << "";
    }
    void wrongValueIsToldWhileItIsTyped()
    {
        QFETCH(QByteArray, field);
        QFETCH(QString, typed);
        QFETCH(QByteArray, line);
        QFETCH(QString, problem);
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.type(field, typed);
        const QString shown = bench.text(line + "_hint");
        QVERIFY2(problem.isEmpty() ? !shown.contains("应") : shown.contains(problem), qPrintable(shown));
        QCOMPARE(bench.canPress("saveButton"), problem.isEmpty());
    }

    void editedModelIsSavedWithItsUntouchedDigits()
    {
        Bench bench;
        bench.engine.solutions["工位1"]["轮毂17寸"]["ring_radius"] = 604.123456789;
        bench.open();
        bench.choose(1);
        QCOMPARE(bench.get<QLineEdit>("ring_radius")->text(), "604.123");
        bench.type("rim_radius", "820.25");
        QCOMPARE(bench.text("rim_radius_hint"), "722 – 919 px");
        bench.press("taught");
        bench.press("saveButton");
        const QVariantMap saved = bench.engine.solutions["工位1"]["轮毂17寸"];
        QCOMPARE(saved["rim_radius"].toDouble(), 820.25);
        QCOMPARE(saved["ring_radius"].toDouble(), 604.123456789);
        QCOMPARE(saved["taught"], QVariant(false));
        QVERIFY(!bench.canPress("saveButton"));
        QVERIFY(bench.text("status").contains("已保存"));
    }

    void calibratedStationTakesMillimetres_data()
    {
        QTest::addColumn<QByteArray>("config");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("hint");
        const QByteArray scale = R"({"station_solution_1": "工位1", "StationScale_1": 0.25})";
        const QByteArray affine = R"({"station_solution_2": "工位1", "use4pointstand": true, "StationScale_2": 9,
            "station2_4p": {"m11": 0, "m21": 0.25, "dx": 7, "m12": -0.25, "m22": 0, "dy": 3}})";
        QTest::newRow("two points") << scale << "150 mm"
                                    << "582 – 618 px\n145.5 – 154.5 mm";
        QTest::newRow("four points") << affine << "150mm"
                                     << "582 – 618 px\n145.5 – 154.5 mm";
        QTest::newRow("pixels") << scale << "600"
                                << "582 – 618 px\n145.5 – 154.5 mm";
        QTest::newRow("not calibrated") << QByteArray("{}") << "600"
                                        << "582 – 618 px";
        QTest::newRow("millimetres of an uncalibrated station") << QByteArray("{}") << "150 mm"
                                                                << "请输入数字";
    }

    void calibratedStationTakesMillimetres()
    {
        QFETCH(QByteArray, config);
        QFETCH(QString, typed);
        const TempHome home;
        home.write(QStringLiteral("/user/globalConfig.json"), config);
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.type("ring_radius", typed);
        QTEST(bench.text("ring_radius_hint"), "hint");
        QCOMPARE(bench.get<QLineEdit>("ring_radius")->text(), typed);
    }

    void unsavedChangesStayVisibleWhileOtherModelsAreLookedAt()
    {
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.type("hole_radius", "15x");
        bench.choose(2);
        QCOMPARE(bench.rows(), QStringList({"auto（内置，只读）", "轮毂17寸 *未保存", "轮毂19寸"}));
        QVERIFY(bench.designer.window()->isWindowModified());
        bench.choose(1);
        QCOMPARE(bench.get<QLineEdit>("hole_radius")->text(), "15x");
        bench.shoot("unsaved");
        bench.type("hole_radius", "14.25");
        QVERIFY2(!bench.designer.window()->isWindowModified(), "typed back to what is stored");
        bench.type("hole_radius", "15");
        bench.press("revertButton");
        QCOMPARE(bench.get<QLineEdit>("hole_radius")->text(), "14.25");
    }

    void refusedSaveTellsWhyAndKeepsTheEdit()
    {
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.type("rim_radius_tol", "60");
        bench.engine.refusal = "rim_radius_tol must be a number from 0.1 to 50";
        bench.press("saveButton");
        QCOMPARE(bench.text("status"), "未能保存“轮毂17寸”：“轮缘半径的公差” must be a number from 0.1 to 50");
        QVERIFY(bench.text("rim_radius_hint").contains("引擎不接受"));
        QCOMPARE(bench.get<QLineEdit>("rim_radius_tol")->text(), "60");
        QVERIFY(bench.canPress("saveButton"));
        bench.shoot("refused");
    }

    void builtInModelCanBeCopiedButNotChanged()
    {
        Bench bench;
        bench.open();
        bench.choose(0);
        QVERIFY(bench.get<QLineEdit>("rim_radius")->isReadOnly());
        QVERIFY(!bench.get<QWidget>("taught")->isEnabled());
        QVERIFY(!bench.canPress("renameButton") && !bench.canPress("removeButton"));
        bench.press("copyButton");
        bench.accept("ModelPanel");
        QCOMPARE(bench.text("title"), "auto 副本");
        QVERIFY(!bench.get<QLineEdit>("rim_radius")->isReadOnly());
    }

    void newModelBeginsUntaught()
    {
        Bench bench;
        bench.open();
        bench.press("addButton");
        bench.accept("ModelPanel", "轮毂21寸");
        QCOMPARE(bench.text("title"), "轮毂21寸");
        QCOMPARE(bench.engine.solutions["工位1"]["轮毂21寸"]["taught"], QVariant(false));
    }

    void takenOrEmptyNameCannotBeGiven()
    {
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.press("renameButton");
        auto* ask = bench.get<QWidget>("ModelPanel")->findChild<QWidget*>("ask");
        for (const QString& name : QStringList{"轮毂19寸", "auto", "", " 轮毂", "轮毂17寸"}) {
            ask->findChild<QLineEdit*>("nameEdit")->setText(name);
            QVERIFY2(!ask->findChild<QPushButton*>("firstButton")->isEnabled(), qPrintable(name));
            QVERIFY(!ask->findChild<QLabel*>("problem")->text().isEmpty());
        }
        bench.shoot("name");
        QTest::keyClick(ask->findChild<QLineEdit*>("nameEdit"), Qt::Key_Escape);
        QVERIFY(ask->isHidden());
        QCOMPARE(bench.engine.solutions["工位1"].size(), 3);
    }

    void renamedModelTakesItsUnsavedChangesAlong()
    {
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.type("hole_radius", "15");
        bench.press("renameButton");
        bench.accept("ModelPanel", "轮毂18寸");
        QCOMPARE(bench.rows(), QStringList({"auto（内置，只读）", "轮毂18寸 *未保存", "轮毂19寸"}));
        QCOMPARE(bench.get<QLineEdit>("hole_radius")->text(), "15");
        QCOMPARE(bench.engine.solutions["工位1"]["轮毂18寸"]["hole_radius"].toDouble(), 14.25);
    }

    void renameThatCannotRemoveTheOldNameLeavesTheOldModel()
    {
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.engine.undeletable = "轮毂17寸";
        bench.press("renameButton");
        bench.accept("ModelPanel", "轮毂18寸");
        QVERIFY(bench.text("status").contains("Permission denied"));
        QCOMPARE(bench.text("title"), "轮毂17寸");
        QCOMPARE(bench.engine.solutions["工位1"].keys(), QStringList({"auto", "轮毂17寸", "轮毂19寸"}));
    }

    void modelIsRemovedOnlyAfterTheQuestion()
    {
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.type("hole_radius", "15");
        bench.press("removeButton");
        QCOMPARE(bench.engine.solutions["工位1"].size(), 3);
        bench.accept("ModelPanel");
        QCOMPARE(bench.engine.solutions["工位1"].keys(), QStringList({"auto", "轮毂19寸"}));
        QVERIFY2(!bench.designer.window()->isWindowModified(), "the changes went with the model");
    }

    void newSolutionIsShownAtOnce()
    {
        Bench bench;
        bench.open();
        bench.press("addSolutionButton");
        bench.accept("ModelPanel", "工位3");
        QCOMPARE(bench.get<QComboBox>("solutionBox")->currentText(), "工位3");
        QVERIFY(bench.rows().isEmpty());
        QCOMPARE(bench.text("title"), "未选择型号");
    }

    void closingWithUnsavedChangesAsks()
    {
        Bench bench;
        bench.open();
        bench.choose(1);
        bench.type("hole_radius", "15");
        bench.designer.window()->close();
        QVERIFY(bench.designer.window()->isVisible());
        bench.shoot("closing");
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
        bench.open();
        bench.choose(2);
        bench.designer.window()->close();
        bench.engine.solutions["工位1"].remove("轮毂17寸");
        bench.engine.solutions["工位1"]["轮毂19寸"]["rim_radius"] = 910.0;
        bench.designer.openDesigner(nullptr);
        QCOMPARE(bench.rows(), QStringList({"auto（内置，只读）", "轮毂19寸"}));
        QCOMPARE(bench.text("title"), "轮毂19寸");
        QCOMPARE(bench.get<QLineEdit>("rim_radius")->text(), "910");
    }

    void parametersOfAnotherEngineAreShownByTheirNames()
    {
        Bench bench;
        bench.engine.solutions["工位2"]["别家"] = {{"depth", 3.5}, {"depth_tol", 5.0}, {"mirrored", true}};
        bench.open();
        bench.get<QComboBox>("solutionBox")->setCurrentText("工位2");
        bench.choose(1);
        bench.type("depth", "4");
        bench.press("mirrored");
        bench.press("saveButton");
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
