#include "ModelCell.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/models/QPlcIndexUI.h"
#include "support/Table.h"

#include <QTableView>

namespace {

struct Bench : ModelCell
{
    QPlcIndexUI dialog{*models, indices};
    DialogDriver driver{dialog};
    QTableView* table = driver.get<QTableView>("table");
    AuditChanges audit;

    Bench()
    {
        dialog.setStations({QStringLiteral("工位1"), QStringLiteral("工位2")});
        QObject::connect(&dialog, &QPlcIndexUI::tablesApplied,
                         [this](const AuditChanges& changes) { audit += changes; });
        dialog.show();
    }

    QModelIndex cell(const QString& model, int column) const
    {
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            if (table->model()->index(row, 0).data().toString() == model)
                return table->model()->index(row, column);
        }
        return {};
    }
    QString text(const QString& model, int column) const { return cell(model, column).data().toString(); }
    bool isMarked(const QString& model, int column) const
    {
        return cell(model, column).data(Qt::BackgroundRole).isValid();
    }

    /// Opens the editor of a cell by its key and types into it; the editor stays open.
    QLineEdit* type(const QString& model, int column, const QString& text) const
    {
        table->setCurrentIndex(cell(model, column));
        table->edit(cell(model, column));
        auto* editor = table->findChild<QLineEdit*>();
        if (!editor)
            qFatal("no editor");
        editor->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        for (const QChar c : text) { // one at a time: each is judged
            QInputMethodEvent typed;
            typed.setCommitString(c);
            QCoreApplication::sendEvent(editor, &typed);
        }
        return editor;
    }
    void enter(const QString& model, int column, const QString& text) const
    {
        QTest::keyClick(type(model, column, text), Qt::Key_Return);
        QTRY_VERIFY(!table->findChild<QLineEdit*>());
    }
};

} // namespace

class PlcIndexUiTest : public QObject
{
    Q_OBJECT

private slots:
    void wrongIndexIsToldWhileItIsTyped_data()
    {
        Table::of<QString, QString>({{"letters", "1a", "工位2，五辐：“1a”不是整数"},
                                     {"zero", "0", "应在1到32767之间"},
                                     {"beyond a word", "32768", "应在1到32767之间"},
                                     {"full-width", "１２", ""},
                                     {"largest", "32767", ""}});
    }
    void wrongIndexIsToldWhileItIsTyped()
    {
        const auto [typed, problem] = Table::row<QString, QString>();
        Bench bench;
        QLineEdit* editor = bench.type("五辐", 2, typed);
        QCOMPARE(editor->text(), typed);
        const QString shown = bench.driver.message();
        QVERIFY2(problem.isEmpty() ? shown.isEmpty() : shown.contains(problem), qPrintable(shown));
        QCOMPARE(bench.driver.canPress("okButton"), problem.isEmpty());
        QCOMPARE(bench.driver.canPress("applyButton"), problem.isEmpty());
        bench.dialog.accept();
        QCOMPARE(bench.dialog.isVisible(), !problem.isEmpty());
        QCOMPARE(bench.stored("工位1"), "五辐=1 钢圈=2");
    }

    void stationsMayUseDifferentIndices()
    {
        Bench bench;
        bench.enter("五辐", 2, "２0");
        bench.enter("钢圈", 1, "");
        bench.driver.press("applyButton");
        QVERIFY(bench.driver.message().startsWith("已保存"));
        QCOMPARE(told(bench.stored("工位1"), bench.stored("工位2"), bench.indices.modelOf("工位2", 20)),
                 "五辐=1|五辐=20 钢圈=2|五辐");
        QCOMPARE(listed(bench.audit), "plcIndex/工位1/钢圈:2> plcIndex/工位2/五辐:1>20");
        QVERIFY(!bench.driver.canPress("applyButton"));
    }

    void cancelLeavesTheTables()
    {
        Bench bench;
        bench.enter("五辐", 1, "9");
        bench.driver.press("cancelButton");
        QCOMPARE(told(bench.stored("工位1"), bench.indices.modelOf("工位1", 1)), "五辐=1 钢圈=2|五辐");
        bench.dialog.show();
        QCOMPARE(bench.text("五辐", 1), "1");
        QVERIFY(bench.audit.isEmpty());
    }

    void escapeTakesBackTheCellInHandOnly()
    {
        Bench bench;
        bench.enter("钢圈", 1, "8");
        bench.enter("五辐", 1, "7");
        QTest::keyClick(bench.type("五辐", 1, "99999"), Qt::Key_Escape);
        QTRY_VERIFY(!bench.table->findChild<QLineEdit*>());
        QCOMPARE(bench.text("五辐", 1) + bench.text("钢圈", 1), "78");
        QVERIFY(bench.dialog.isVisible() && bench.driver.canPress("applyButton"));
    }

    void sharedIndexIsMarkedInItsStation()
    {
        Bench bench;
        bench.enter("钢圈", 1, "1");
        QVERIFY(bench.isMarked("五辐", 1) && bench.isMarked("钢圈", 1));
        QVERIFY(!bench.isMarked("五辐", 2) && !bench.isMarked("钢圈", 2));
        QCOMPARE(bench.driver.message(), "工位1：索引1被五辐、钢圈共用，实际使用“五辐”");
        bench.driver.press("okButton");
        QCOMPARE(bench.stored("工位1"), "五辐=1 钢圈=1");
    }

    void modelThatTheLibraryLacksIsMarkedUntilItsIndexIsCleared()
    {
        Bench bench;
        bench.indices.setTable("工位2", {{"五辐", 1}, {"旧型号", 7}});
        QVERIFY(bench.indices.save());
        bench.dialog.hide();
        bench.dialog.show();
        QVERIFY(bench.isMarked("旧型号", 0) && bench.isMarked("旧型号", 2));
        QVERIFY(bench.driver.message().contains("型号库中没有“旧型号”"));
        QVERIFY(!bench.driver.canPress("okButton"));
        bench.table->setCurrentIndex(bench.cell("旧型号", 2));
        bench.driver.act({"clearButton", "okButton"});
        QCOMPARE(bench.stored("工位2"), "五辐=1");
    }

    void modelsThatComeAndGoWhileTheTableIsOpen()
    {
        Bench bench;
        QString error;
        bench.enter("五辐", 1, "9");
        QVERIFY(bench.models->addModel("多辐", 3, &error) && bench.models->removeModel("钢圈", &error));
        QCOMPARE(told(bench.text("五辐", 1), bench.text("多辐", 2)), "9|3");
        QVERIFY(!bench.cell("钢圈", 0).isValid());
        bench.driver.press("okButton");
        QCOMPARE(bench.stored("工位1"), "五辐=9 多辐=3");
    }

    void secondTableDoesNotUndoTheFirst()
    {
        Bench bench;
        QPlcIndexUI other(*bench.models, bench.indices);
        other.setStations({"工位1", "工位2"});
        other.show();
        bench.enter("五辐", 1, "9");
        bench.driver.press("okButton");
        auto* table = DialogDriver(other).get<QTableView>("table");
        QCOMPARE(table->model()->index(0, 1).data().toString(), "9");
        table->model()->setData(table->model()->index(1, 2), "8");
        DialogDriver(other).press("okButton");
        QCOMPARE(told(bench.stored("工位1"), bench.stored("工位2")), "五辐=9 钢圈=2|五辐=1 钢圈=8");
    }

    void unwritableTablesStayAsTheyWere()
    {
        Bench bench;
        bench.enter("五辐", 1, "9");
        bench.home.block();
        bench.driver.press("okButton");
        if (!bench.driver.question().isEmpty())
            bench.driver.press("firstAnswer");
        QVERIFY(bench.dialog.isVisible() && bench.driver.message().startsWith("未能保存，索引表没有改变"));
        QCOMPARE(told(bench.indices.modelOf("工位1", 1), bench.text("五辐", 1)), "五辐|9");
        QVERIFY(bench.audit.isEmpty());
    }

    void handEditedFileIsToldBeforeItIsOverwritten_data()
    {
        Table::of<bool>({{"overwritten", false}, {"taken", true}});
    }
    void handEditedFileIsToldBeforeItIsOverwritten()
    {
        const auto [take] = Table::row<bool>();
        Bench bench;
        const QByteArray edited = bench.home.read("/user/plcIndex.json").replace("\"PlcIndex\": 2", "\"PlcIndex\": 22");
        bench.home.write("/user/plcIndex.json", edited);
        bench.enter("五辐", 1, "9");
        bench.driver.press("applyButton");
        QVERIFY(!bench.driver.question().isEmpty());
        QCOMPARE(bench.home.read("/user/plcIndex.json"), edited);
        bench.driver.press(take ? "secondAnswer" : "firstAnswer");
        if (take) {
            QCOMPARE(told(bench.text("五辐", 1), bench.text("钢圈", 2)), "1|22");
            bench.driver.press("applyButton");
            QCOMPARE(bench.driver.question(), "");
        }
        QCOMPARE(bench.stored("工位1"), take ? "五辐=1 钢圈=22" : "五辐=9 钢圈=2");
        QCOMPARE(bench.indices.modelOf("工位1", 22), take ? "钢圈" : "");
    }

    void stationsWithoutOrWithTheSameSolutionHaveOneColumn()
    {
        Bench bench;
        bench.dialog.setStations({"工位1", ""});
        QCOMPARE(bench.table->model()->columnCount(), 2);
        bench.dialog.setStations({"工位1", "工位1"});
        QCOMPARE(bench.table->model()->columnCount(), 2);
        bench.dialog.setStations({});
        QCOMPARE(bench.table->model()->columnCount(), 1);
    }

    void messageFollowsTheLanguage()
    {
        Bench bench;
        bench.enter("五辐", 1, "7x");
        const English english;
        QTRY_COMPARE(bench.driver.message(), "工位1, 五辐: “7x” is no whole number");
        QCOMPARE(bench.text("五辐", 1), "7x");
    }
};

QTEST_MAIN(PlcIndexUiTest)
#include "tst_plcindexui.moc"
