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
        QVariantMap hub = FakeEngine::found({}, {320, 240}); // of a solution that answers it
        QVariantMap answer = hub[ResultKeys::algoResult].toMap();
        answer.insert(ResultKeys::holeCenter, QPointF(420, 130));
        hub.insert(ResultKeys::algoResult, answer);
        for (const QVariantMap& result : {hub, FakeEngine::found({}, {300, 90}), FakeEngine::lost(1, "未找到气门孔")}) {
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
        point();
    }
    void point()
    {
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
        QCOMPARE(told(bench.verdict(0), bench.verdict(2)), "孔|");
        bench.engine.refusal.clear();
        bench.strip("holeList")->setCurrentRow(0);
        bench.key(bench.strip("holeList"), Qt::Key_Delete);
        QVERIFY(bench.engine.sources(model, Kind::Hole).isEmpty() && bench.strip("holeList")->count() == 0);

        bench.choose(0); // built in: it learns nothing
        QVERIFY(!bench.strip("holeList")->isVisible());
        bench.press("startButton");
        QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
        bench.engine.answer(FakeEngine::found({}, {420, 130}));
        QTRY_VERIFY(bench.table()->model()->rowCount() > 0);
        bench.table()->selectRow(0);
        QVERIFY(!bench.canPress("holeButton") && !bench.canPress("rejectButton"));
    }

    void taughtHoleIsStoredTogetherWithItsParameters()
    {
        ExampleBench bench;
        bench.teach();
        bench.act({"revertButton", "hole_radius=15", "saveButton"});
        QVERIFY(bench.engine.sources(model, Kind::Hole).isEmpty());
        bench.get<QPushButton>("runButton")->click();
        bench.engine.answer(FakeEngine::found({}, {420, 130}));
        QTRY_VERIFY(bench.canPress("teachButton"));
        bench.point();
        bench.engine.refusal = QStringLiteral("disk full");
        bench.press("saveButton");
        QVERIFY(bench.canPress("saveButton") && bench.engine.sources(model, Kind::Hole).isEmpty());
        bench.engine.refusal.clear();
        bench.press("saveButton");
        QCOMPARE(bench.engine.sources(model, Kind::Hole).size(), 1);
        QVERIFY(bench.engine.sources(model, Kind::Hole)[0].startsWith("wheel.png 4"));
        bench.act({"hole_radius=15", "saveButton"});
        QCOMPARE(bench.engine.sources(model, Kind::Hole).size(), 1);
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
};

QTEST_MAIN(DesignerExamplesTest)
#include "tst_designerexamples.moc"
