#include "Bench.h"
#include "batch/BatchTable.h"
#include "panels/BatchPanel.h"
#include "support/TempHome.h"

#include <QCheckBox>
#include <QTabWidget>
#include <QTableView>

namespace {

struct BatchBench : Bench
{
    TempHome home;

    BatchPanel* panel() const { return get<BatchPanel>("BatchPanel"); }
    QAbstractItemModel* table() const { return get<QTableView>("table")->model(); }
    QString cell(int row, int column) const { return table()->index(row, column).data().toString(); }
    QStringList column(int column) const
    {
        QStringList cells;
        for (int row = 0; row < table()->rowCount(); ++row)
            cells.append(cell(row, column));
        return cells;
    }
    /// Runs the pictures of the folder "day".
    void runDay() const
    {
        panel()->setFolder(dir.filePath("day"));
        press("startButton");
    }
    /// Answers the next task as soon as it is there.
    bool answerNext(const QVariantMap& result)
    {
        const bool came = QTest::qWaitFor([this] { return !engine.tasks.empty(); });
        if (came)
            engine.answer(result);
        return came;
    }
    bool isDone() const { return canPress("exportButton"); }
};

QVariantMap at(double x, double y, double angle)
{
    return FakeEngine::found({}, {x, y}, angle);
}

} // namespace

class DesignerBatchTest : public QObject
{
    Q_OBJECT

private slots:
    void storedAndEditedParametersAreRunSideBySide()
    {
        BatchBench bench;
        bench.engine.hasTrial = true;
        bench.openAt(1);
        bench.get<QTabWidget>("tabs")->setCurrentIndex(1);
        bench.type("hole_radius", "15");
        for (const char* name : {"1 same.png", "2 moved.png", "3 gained.png", "4 lost.png", "5 missed.png"})
            bench.image(QStringLiteral("day/Station1/%1").arg(name));
        QFile(bench.dir.filePath("day/Station1/6 text.bmp")).open(QIODevice::WriteOnly);
        bench.runDay();

        const QVariantMap none = FakeEngine::lost(1, "未找到气门孔");
        const QVector<QPair<QVariantMap, QVariantMap>> answers{{at(420, 130, 0.01), at(420.1, 130, 359.99)},
                                                               {at(420, 130, 10), at(423, 134, 10.5)},
                                                               {none, at(420, 130, 10)},
                                                               {at(420, 130, 10), none},
                                                               {none, none}};
        for (const auto& answer : answers) {
            QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
            QCOMPARE(bench.engine.tasks[0].parameters["hole_radius"].toDouble(), 14.25);
            bench.engine.answer(answer.first);
            QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
            QCOMPARE(bench.engine.tasks[0].parameters["hole_radius"].toDouble(), 15.0);
            bench.engine.answer(answer.second);
        }
        QTRY_VERIFY(bench.isDone());
        QCOMPARE(bench.column(BatchTable::ChangeColumn),
                 QStringList({"一致", "移动", "新找到", "丢失", "均未找到", "无法读取"}));
        QVERIFY2(bench.cell(5, BatchTable::FirstFound).contains("6 text.bmp"), "the reason is shown");
        QCOMPARE(bench.column(BatchTable::MovedBy), QStringList({"0.10", "5.00", "", "", "", ""}));
        QCOMPARE(bench.column(BatchTable::TurnedBy), QStringList({"0.020", "0.500", "", "", "", ""}));
        QCOMPARE(bench.text("summary"), "共 6 张，无法读取 1，找到 3 → 3，新找到 1，丢失 1，移动 1（最大 5.00 px），"
                                        "最慢 5.5 → 5.5 ms");
        bench.get<QCheckBox>("notableBox")->setChecked(true);
        QCOMPARE(bench.table()->rowCount(), 5);
    }

    void oneModelIsRunOnADayOfTheArchive()
    {
        BatchBench bench;
        const QString day = bench.home.path("/DBFiles/SrcImages/2024-05-06");
        QVERIFY(QDir().mkpath(day + "/Station2/轮毂") && QFile::copy(bench.image("a"), day + "/Station2/轮毂/1.jpg"));
        bench.openAt(1);
        bench.get<QTabWidget>("tabs")->setCurrentIndex(1);
        auto* days = bench.get<QComboBox>("dayBox");
        QCOMPARE(days->itemText(1), "2024-05-06");
        days->setCurrentIndex(1);
        emit days->activated(1);
        bench.press("startButton");
        QVERIFY(bench.answerNext(FakeEngine::lost(2, "两个孔")));
        QTRY_VERIFY(bench.isDone());
        QCOMPARE(bench.cell(0, BatchTable::Image), "Station2/轮毂/1.jpg");
        QCOMPARE(bench.cell(0, BatchTable::FirstFound), "两个孔");
        for (const int unneeded : {BatchTable::SecondFound, BatchTable::VerdictColumn}) // the engine keeps no examples
            QVERIFY(bench.get<QTableView>("table")->isColumnHidden(unneeded));
        QVERIFY(!bench.get<QWidget>("ExamplePanel")->isVisible() && !bench.get<QWidget>("review")->isVisible());
        QVERIFY(bench.text("summary").contains("未找到 1"));
    }

    void engineThatCannotTryEditsComparesModels()
    {
        BatchBench bench;
        bench.openAt(1);
        bench.type("hole_radius", "15");
        auto* against = bench.get<QComboBox>("againstBox");
        QCOMPARE(against->findText("编辑中的参数"), -1);
        against->setCurrentText("型号 轮毂19寸");
        bench.image("day/1.png");
        bench.runDay();
        QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
        QCOMPARE(bench.engine.tasks[0].model, "轮毂17寸");
        bench.engine.answer(at(1, 2, 3));
        QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
        QCOMPARE(bench.engine.tasks[0].model, "轮毂19寸");
    }

    void stoppedRunKeepsItsRowsAndBeginsAnew()
    {
        BatchBench bench;
        bench.open();
        for (int i = 0; i < 5; ++i)
            bench.image(QStringLiteral("day/%1.png").arg(i));
        bench.runDay();
        QVERIFY(bench.answerNext(at(1, 2, 3)));
        QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
        bench.press("startButton");
        QCOMPARE(bench.table()->rowCount(), 1);
        bench.engine.answer(at(9, 9, 9));
        bench.press("startButton");
        for (int i = 0; i < 5; ++i)
            QVERIFY(bench.answerNext(at(i, 2, 3)));
        QTRY_VERIFY(bench.isDone());
        QCOMPARE(bench.column(BatchTable::Image), QStringList({"0.png", "1.png", "2.png", "3.png", "4.png"}));
        QCOMPARE(bench.cell(0, BatchTable::FirstAngle), "3.000");
        bench.press("startButton");
        QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
        bench.designer.window()->close();
        bench.engine.answer(at(1, 2, 3));
        QCoreApplication::sendPostedEvents();
        QVERIFY2(bench.engine.tasks.empty(), "the engine is left to the cell");
    }

    void tableIsExported()
    {
        BatchBench bench;
        bench.openAt(1);
        bench.panel()->setFolder(bench.dir.path());
        bench.press("startButton");
        QTRY_COMPARE(bench.text("summary"), "文件夹中没有图像");
        QVERIFY(bench.canPress("startButton") && !bench.canPress("exportButton"));
        bench.image("day/=HYPERLINK(1).png");
        bench.runDay();
        QVERIFY(bench.answerNext(FakeEngine::lost(1, "@SUM(A1), \"x\"")));
        QTRY_VERIFY(bench.isDone());
        bench.panel()->exportTo(bench.home.path("/结果.csv"));
        QTRY_VERIFY(bench.text("status").contains("已导出"));
        const QList<QByteArray> lines = bench.home.read("/结果.csv").split('\n');
        QVERIFY(lines[0].contains("当前 角度°") && lines[1].startsWith("'=HYPERLINK(1).png,,,,"));
        bench.panel()->exportTo(bench.home.path("/结果.csv/nowhere.csv"));
        QTRY_VERIFY(bench.text("status").contains("未能导出"));
    }
};

QTEST_MAIN(DesignerBatchTest)
#include "tst_designerbatch.moc"
