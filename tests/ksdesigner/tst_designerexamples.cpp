#include "Bench.h"
#include "batch/BatchTable.h"
#include "panels/BatchPanel.h"

#include <QMenu>
#include <QTabWidget>
#include <QTableView>

namespace {

using Kind = IModelExamples::Kind;

const QString model = QStringLiteral("轮毂17寸");

/// The designer at a model, with an engine that keeps examples.
struct ExampleBench : Bench
{
    ExampleBench()
    {
        engine.hasExamples = true;
        engine.hasTeacher = true;
        openAt(1);
    }

    QTableView* table() const { return get<QTableView>("table"); }
    QString verdict(int row) const { return table()->model()->index(row, BatchTable::VerdictColumn).data().toString(); }
    /// Presses a key in a list or table, as after a click into it.
    void key(QWidget* widget, Qt::Key key) const
    {
        QVERIFY(QTest::qWaitForWindowActive(designer.window()));
        widget->setFocus();
        QTest::keyClick(widget, key);
    }
    QListWidget* strip(const char* name) const { return get<QListWidget>(name); }

    /// Runs a folder of three pictures: a hole, another place, and nothing.
    void runDay()
    {
        get<QTabWidget>("tabs")->setCurrentIndex(1);
        for (const char* name : {"day/1.png", "day/2.png", "day/3.png"})
            image(name);
        get<BatchPanel>("BatchPanel")->setFolder(dir.filePath("day"));
        press("startButton");
        for (const QVariantMap& result : {FakeEngine::found({}, {420, 130}), FakeEngine::found({}, {300, 90}),
                                          FakeEngine::lost(1, "未找到气门孔")}) {
            QTRY_COMPARE(engine.tasks.size(), size_t(1));
            engine.answer(result);
        }
        QTRY_VERIFY(canPress("exportButton"));
    }

    /// Two clicks, and the engine's proposal.
    void teach()
    {
        engine.proposal = FakeEngine::parameters(800, 600, 14, true);
        QVERIFY(tries("wheel.png"));
        engine.answer(FakeEngine::found({}, {420, 130}));
        QTRY_VERIFY(canPress("teachButton"));
        press("teachButton");
        clickImage({320, 40});
        clickImage({420, 130});
        QTRY_COMPARE(typed("rim_radius"), "800");
    }
};

} // namespace

class DesignerExamplesTest : public QObject
{
    Q_OBJECT

private slots:
    void judgedPlacesOfARunAreLearned()
    {
        ExampleBench bench;
        bench.runDay();
        QVERIFY(!bench.canPress("holeButton"));
        bench.table()->selectRow(0);
        QTRY_VERIFY(bench.get<QLabel>("picture")->pixmap(Qt::ReturnByValue).width() > 0);
        bench.key(bench.table(), Qt::Key_Y);
        QTRY_COMPARE(bench.verdict(0), "孔");
        QCOMPARE(bench.table()->currentIndex().row(), 1);
        bench.press("rejectButton");
        QTRY_COMPARE(bench.verdict(1), "误认");
        QCOMPARE(bench.engine.sources(model, Kind::Hole), QStringList{"1.png 420,130"});
        QCOMPARE(bench.engine.sources(model, Kind::Rejected), QStringList{"2.png 300,90"});
        QCOMPARE(bench.strip("holeList")->count() + bench.strip("rejectedList")->count(), 2);
        QVERIFY2(!bench.canPress("holeButton"), "no place was found there");
        bench.key(bench.table(), Qt::Key_Y);
        bench.table()->selectRow(0);
        bench.engine.refusal = QStringLiteral("disk full");
        bench.press("rejectButton");
        QTRY_VERIFY(bench.text("status").contains("disk full"));
        QCOMPARE(bench.verdict(0), "孔");
        QCOMPARE(bench.verdict(2), QString());
    }

    void hubOfASolutionIsNotTakenForTheHole()
    {
        ExampleBench bench;
        bench.get<QTabWidget>("tabs")->setCurrentIndex(1);
        bench.image("day/1.png");
        bench.get<BatchPanel>("BatchPanel")->setFolder(bench.dir.filePath("day"));
        bench.press("startButton");
        QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
        QVariantMap result = FakeEngine::found({}, {320, 240});
        QVariantMap answer = result[ResultKeys::algoResult].toMap();
        answer.insert(ResultKeys::holeCenter, QPointF(420, 130));
        result.insert(ResultKeys::algoResult, answer);
        bench.engine.answer(result);
        QTRY_VERIFY(bench.canPress("exportButton"));
        bench.table()->selectRow(0);
        bench.press("holeButton");
        QTRY_COMPARE(bench.engine.sources(model, Kind::Hole), QStringList{"1.png 420,130"});
    }

    void builtInModelLearnsNothing()
    {
        ExampleBench bench;
        bench.choose(0);
        QVERIFY(!bench.strip("holeList")->isVisible());
        bench.runDay();
        bench.table()->selectRow(0);
        QVERIFY(!bench.canPress("holeButton") && !bench.canPress("rejectButton"));
    }

    void suggestedSizesChangeNothingUntilAppliedAndSaved()
    {
        ExampleBench bench;
        QVERIFY(!bench.get<QPushButton>("applyButton")->isVisible());
        QVERIFY(bench.text("proposal").contains("至少需要 3 个"));
        bench.engine.suggestion = FakeEngine::parameters(820.5, 610, 15, true);
        bench.choose(2);
        bench.choose(1);
        QVERIFY2(bench.text("proposal").contains("820.5 ±\u00a012\u00a0%"), qPrintable(bench.text("proposal")));
        bench.type("score_limit", "0.4");
        bench.press("applyButton");
        QCOMPARE(bench.typed("rim_radius"), "820.5");
        QCOMPARE(bench.typed("score_limit"), "0.4");
        QVERIFY(!bench.canPress("applyButton"));
        QCOMPARE(bench.engine.solutions["工位1"][model]["rim_radius"].toDouble(), 812.5);
        bench.press("saveButton");
        QCOMPARE(bench.engine.solutions["工位1"][model]["rim_radius"].toDouble(), 820.5);
    }

    void exampleIsForgotten()
    {
        ExampleBench bench;
        bench.runDay();
        bench.table()->selectRow(0);
        for (const char* answer : {"holeButton", "holeButton"})
            bench.press(answer);
        QTRY_COMPARE(bench.strip("holeList")->count(), 2);
        bench.strip("holeList")->setCurrentRow(0);
        bench.key(bench.strip("holeList"), Qt::Key_Delete);
        QCOMPARE(bench.engine.sources(model, Kind::Hole), QStringList{"2.png 300,90"});
        QCOMPARE(bench.strip("holeList")->count(), 1);
    }

    void taughtHoleIsStoredTogetherWithItsParameters()
    {
        ExampleBench bench;
        bench.teach();
        QVERIFY(bench.engine.sources(model, Kind::Hole).isEmpty());
        bench.engine.refusal = QStringLiteral("disk full");
        bench.press("saveButton");
        QVERIFY(bench.canPress("saveButton") && bench.engine.sources(model, Kind::Hole).isEmpty());
        bench.engine.refusal.clear();
        bench.press("saveButton");
        QCOMPARE(bench.engine.sources(model, Kind::Hole).size(), 1);
        QVERIFY(bench.engine.sources(model, Kind::Hole)[0].startsWith("wheel.png 4"));
        bench.type("hole_radius", "15");
        bench.press("saveButton");
        QCOMPARE(bench.engine.sources(model, Kind::Hole).size(), 1);
    }

    void revertedTeachingLeavesNoExample()
    {
        ExampleBench bench;
        bench.teach();
        bench.press("revertButton");
        bench.type("hole_radius", "15");
        bench.press("saveButton");
        QVERIFY(bench.engine.sources(model, Kind::Hole).isEmpty());
    }

    void examplesGoAlongWithTheirModel()
    {
        ExampleBench bench;
        bench.engine.shown[model].holes = {{QImage(64, 64, QImage::Format_Grayscale8), "a.png"}};
        bench.press("copyButton");
        bench.accept("ModelPanel", "副本");
        QCOMPARE(bench.engine.sources("副本", Kind::Hole), QStringList{"a.png"});
        bench.press("renameButton");
        bench.accept("ModelPanel", "改名");
        QCOMPARE(bench.engine.sources("改名", Kind::Hole), QStringList{"a.png"});
        bench.engine.shown["改名"].trouble = QStringLiteral("部分示例无法读取");
        bench.choose(0);
        bench.choose(bench.rows().indexOf("改名"));
        QVERIFY(bench.text("trouble").contains("无法读取"));
    }

    void missedHoleIsPointedOutOnTheImage()
    {
        ExampleBench bench;
        QVERIFY(bench.tries("missed.png"));
        bench.engine.answer(FakeEngine::lost(1, "未找到气门孔"));
        auto* view = bench.get<ImageView>("view");
        const QPoint place = view->viewPointOf({420, 130});
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, view->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(view->viewport(), &event);
        auto* menu = bench.designer.window()->findChild<QMenu*>();
        QVERIFY(menu && menu->actions().size() == 2);
        menu->actions().at(0)->trigger();
        QTRY_COMPARE(bench.engine.sources(model, Kind::Hole).size(), 1);
        QVERIFY(bench.engine.sources(model, Kind::Hole)[0].startsWith("missed.png 4"));
    }

    void engineWithoutExamplesIsShownWithoutThem()
    {
        Bench bench;
        bench.openAt(1);
        QVERIFY(!bench.get<QWidget>("ExamplePanel")->isVisible());
        bench.get<QTabWidget>("tabs")->setCurrentIndex(1);
        QVERIFY(!bench.get<QWidget>("review")->isVisible());
        QVERIFY(bench.get<QTableView>("table")->isColumnHidden(BatchTable::VerdictColumn));
    }
};

QTEST_MAIN(DesignerExamplesTest)
#include "tst_designerexamples.moc"
