#include "ModelCell.h"
#include "common/forms/InlineMessage.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/models/QModelMangerUI.h"
#include "support/FakeEngine.h"
#include "support/Table.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QPushButton>
#include <QTableView>

namespace {

/// A model manager on a cell whose engine knows the model "五辐" in both solutions and "钢圈" in the first.
struct Bench : ModelCell
{
    FakeEngine engine;
    std::unique_ptr<QModelMangerUI> dialog;
    AuditChanges audit;

    explicit Bench(bool withEngine = true)
    {
        engine.solutions = {{"工位1", {{"auto", {}}, {"五辐", parameters(812.5)}, {"钢圈", parameters(640)}}},
                            {"工位2", {{"auto", {}}, {"五辐", parameters(812.5)}}}};
        engine.hasExamples = true;
        dialog = std::make_unique<QModelMangerUI>(*models, withEngine ? &engine : nullptr);
        QObject::connect(dialog.get(), &QModelMangerUI::modelsChanged,
                         [this](const AuditChanges& changes) { audit += changes; });
        dialog->show();
    }

    static QVariantMap parameters(double rim) { return {{"rim_radius", rim}, {"taught", true}}; }

    /// A model's rim radius in both solutions, "812.5|-": "-" where it has none.
    QString rims(const QString& model) const
    {
        QStringList texts;
        for (const auto& models : engine.solutions)
            texts << (models.contains(model) ? models[model].value("rim_radius").toString() : "-");
        return texts.join('|');
    }

    /// What the engine was shown of a model.
    QStringList shown(const QString& model) { return engine.sources(model, IModelExamples::Kind::Hole); }

    DialogDriver driver() const { return DialogDriver(*dialog); }
    QModelEditUI& edit() const { return *dialog->findChild<QModelEditUI*>(); }
    DialogDriver editDriver() const { return DialogDriver(edit()); }

    void choose(const QString& name) const
    {
        auto* table = driver().get<QTableView>("table");
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            if (table->model()->index(row, 0).data().toString() == name)
                table->selectRow(row);
        }
        QVERIFY(driver().canPress("removeButton"));
    }

    /// Answers the open file dialog.
    void giveFile(const QString& path) const
    {
        auto* files = dialog->findChild<QFileDialog*>();
        QVERIFY(files && files->isVisible());
        files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
        const auto buttons = files->findChild<QDialogButtonBox*>()->buttons();
        for (QAbstractButton* button : buttons) {
            if (files->findChild<QDialogButtonBox*>()->buttonRole(button) == QDialogButtonBox::AcceptRole)
                QTest::mouseClick(button, Qt::LeftButton);
        }
        QTRY_VERIFY(!dialog->findChild<QFileDialog*>()); // it deletes itself
    }
};

} // namespace

class ModelManagerUiTest : public QObject
{
    Q_OBJECT

private slots:
    void listShowsWhatTheStationsAndTheEngineKnow()
    {
        Bench bench;
        auto* table = bench.driver().get<QTableView>("table");
        const auto row = [&](const QString& name) {
            for (int row = 0; row < table->model()->rowCount(); ++row) {
                QStringList texts;
                for (int column : {0, 1, 3})
                    texts << table->model()->index(row, column).data().toString();
                if (texts[0] == name)
                    return texts.mid(1).join(' ');
            }
            return QString();
        };
        QCOMPARE(row("五辐"), QString("1 已示教"));
        QString error;
        QVERIFY(bench.models->setStationTable("工位2", {{"五辐", 7}}, &error));
        QCOMPARE(told(row("五辐"), row("钢圈")), "1 / 7 已示教|2 / — 已示教");
        QVERIFY(bench.models->setStationTable("工位1", {}, &error));
        QCOMPARE(told(row("五辐"), row("钢圈")), "— / 7 已示教|— 已示教");
        bench.choose("五辐");
        bench.models->setCurrentModels({"五辐"});
        QVERIFY2(bench.driver().canPress("removeButton"), "a model switch leaves the choice");
        bench.driver().press("addButton");
        bench.editDriver().type("nameEdit", "五辐．");
        QVERIFY(!bench.editDriver().canPress("okButton"));
        bench.editDriver().act({"nameEdit=新轮", "okButton"});
        QCOMPARE(row("新轮").section(' ', -1), QString("未示教"));
        QVERIFY(bench.driver().get<InlineMessage>("message")->text().contains("任务设计器"));
    }

    void wrongEntryIsToldWhileItIsTyped_data()
    {
        // what names and numbers may be is SqlText's and WholeNumber's
        Table::of<QString, QString, QString>({{"nothing", "", "3", "不能为空"},
                                              {"apostrophe", "O'Neill", "3", "单引号"},
                                              {"taken name", "钢圈", "3", "已存在"},
                                              {"no index", "新", "", "PLC索引：请输入数字"},
                                              {"index 0", "新", "0", "应在1到32767之间"},
                                              {"beyond a word", "新", "32768", "应在1到32767之间"},
                                              {"taken index", "新", "２", "已被型号钢圈使用"},
                                              {"full-width", "１８寸轮毂", "１２", ""}});
    }
    void wrongEntryIsToldWhileItIsTyped()
    {
        const auto [name, index, problem] = Table::row<QString, QString, QString>();
        Bench bench;
        bench.driver().press("addButton");
        bench.editDriver().act({"nameEdit=" + name, "indexEdit=" + index});
        const QString shown = bench.editDriver().message();
        QVERIFY2(problem.isEmpty() ? shown.isEmpty() : shown.contains(problem), qPrintable(shown));
        QCOMPARE(bench.editDriver().canPress("okButton"), problem.isEmpty());
        QTest::keyClick(bench.editDriver().get<QLineEdit>("indexEdit"), Qt::Key_Return);
        QCOMPARE(bench.edit().isVisible(), !problem.isEmpty());
        QCOMPARE(bench.listed(), problem.isEmpty() ? "五辐=1 钢圈=2 １８寸轮毂=12" : "五辐=1 钢圈=2");
    }

    void addedModelIsKnownToAllStations()
    {
        Bench bench;
        bench.driver().press("addButton");
        QCOMPARE(told(bench.editDriver().text("nameEdit"), bench.editDriver().text("indexEdit")), "新型号|3");
        bench.editDriver().act({"nameEdit=多辐", "calibratedBox", "okButton"});
        QCOMPARE(told(bench.listed(), bench.stored("工位2"), listed(bench.audit)),
                 "五辐=1 多辐=3* 钢圈=2|五辐=1 多辐=3 钢圈=2|model/多辐:>3");
        QVERIFY(bench.driver().message().startsWith("已保存型号“多辐”；任务设计器中还没有它"));
        QCOMPARE(bench.driver().text<QLabel>("parameters"), "引擎中没有此型号的参数");
    }

    void longNameOfAnUntaughtModelIsShownWithoutWideningTheDialog()
    {
        Bench bench;
        const QString name(60, 'W');
        const int width = bench.dialog->width();
        bench.engine.solutions["工位1"][name] = {{"taught", false}};
        bench.driver().press("addButton");
        bench.editDriver().type("nameEdit", name);
        bench.editDriver().press("okButton");
        QVERIFY(bench.driver().message().remove(QChar(0x200b)).contains(name + "”；它还没有示教"));
        QVERIFY(bench.dialog->minimumSizeHint().width() <= width);
        const QAbstractItemModel* rows = bench.driver().get<QTableView>("table")->model();
        int row = 0;
        while (rows->index(row, 0).data() != name)
            ++row;
        QCOMPARE(rows->index(row, 2).data().toString() + rows->index(row, 3).data().toString(), "未示教");
        bench.driver().press("removeButton");
        QVERIFY(bench.dialog->minimumSizeHint().width() <= width);
    }

    void cancelledEditChangesNothing()
    {
        Bench bench;
        bench.choose("五辐");
        bench.driver().press("modifyButton");
        bench.editDriver().act({"nameEdit=别的", "calibratedBox", "cancelButton"});
        QCOMPARE(bench.listed(), "五辐=1 钢圈=2");
        QCOMPARE(bench.rims("五辐"), "812.5|812.5");
        bench.driver().press("modifyButton");
        QCOMPARE(bench.editDriver().text("nameEdit"), "五辐");
        bench.editDriver().press("okButton");
        QVERIFY2(bench.audit.isEmpty(), "nothing was changed");
    }

    void renamedOrCopiedModelKeepsItsParameters_data()
    {
        Table::of<QByteArray, QString, QString>(
            {{"renamed", "modifyButton", "五辐17寸=9* 钢圈=2",
              "model/五辐17寸/plcIndex:1>9 model/五辐17寸/calibrated:false>true model/五辐:五辐>五辐17寸"},
             {"copied", "copyButton", "五辐=1 五辐17寸=9* 钢圈=2", "model/五辐17寸:>9"}});
    }
    void renamedOrCopiedModelKeepsItsParameters()
    {
        const auto [button, list, audit] = Table::row<QByteArray, QString, QString>();
        const bool copies = button == "copyButton";
        Bench bench;
        bench.engine.solutions["工位2"]["五辐 2"] = bench.engine.solutions["工位2"]["五辐17寸"] = Bench::parameters(1);
        bench.engine.shown["五辐"].holes = {{{}, "a.png"}};
        bench.choose("五辐");
        bench.driver().press(button);
        QCOMPARE(bench.editDriver().text("nameEdit"), copies ? "五辐 2" : "五辐");
        QCOMPARE(bench.editDriver().message().contains("将覆盖引擎中已有的同名参数：工位2"), copies);
        bench.editDriver().act({"nameEdit=五辐17寸", "indexEdit=9", "calibratedBox", "okButton"});
        QCOMPARE(told(bench.listed(), bench.rims("五辐17寸"), bench.rims("五辐"), listed(bench.audit)),
                 told(list, "812.5|812.5", copies ? "812.5|812.5" : "-|-", audit));
        QCOMPARE(bench.shown("五辐17寸"), QStringList{"a.png"});
    }

    void whatFailsHalfwayIsUndone_data()
    {
        Table::columns<QByteArray, QString>();
        for (const char* button : {"copyButton", "modifyButton"}) {
            for (const char* trouble : {"engine stores half", "tables"})
                QTest::addRow("%s, %s", button, trouble) << QByteArray(button) << QString(trouble);
        }
        QTest::newRow("modify, old name stays") << QByteArray("modifyButton") << "engine removes half";
    }
    void whatFailsHalfwayIsUndone()
    {
        const auto [button, trouble] = Table::row<QByteArray, QString>();
        Bench bench;
        bench.engine.solutions["工位1"]["新名"] = Bench::parameters(77);
        bench.choose("五辐");
        bench.driver().press(button);
        bench.editDriver().type("nameEdit", "新名");
        if (trouble == "engine stores half")
            bench.engine.unwritable = "工位2";
        else if (trouble == "engine removes half")
            bench.engine.undeletable = "工位2";
        else
            bench.home.block();
        bench.editDriver().press("okButton");
        QVERIFY(bench.edit().isVisible() && !bench.editDriver().message().isEmpty());
        QVERIFY(bench.editDriver().get<InlineMessage>("message")->tone() == Tone::Error);
        QCOMPARE(bench.listed(), "五辐=1 钢圈=2");
        QCOMPARE(bench.rims("五辐"), "812.5|812.5");
        if (trouble != "engine removes half") // the engine that cannot remove keeps the new name, too
            QCOMPARE(bench.rims("新名"), "77|-");
        QVERIFY(bench.audit.isEmpty());
    }

    void modelIsRemovedOnlyAfterTheQuestion()
    {
        Bench bench;
        bench.choose("五辐");
        bench.driver().press("removeButton");
        QVERIFY(bench.driver().question().contains("“五辐”"));
        bench.driver().press("noAnswer");
        QCOMPARE(bench.listed(), "五辐=1 钢圈=2");
        bench.driver().act({"removeButton", "firstAnswer"});
        QCOMPARE(bench.listed(), "钢圈=2");
        QCOMPARE(bench.rims("五辐"), "812.5|812.5");
        bench.choose("钢圈");
        bench.driver().act({"removeButton", "secondAnswer"});
        QCOMPARE(bench.rims("钢圈"), "-|-");
        QCOMPARE(told(bench.stored("工位1"), bench.driver().text<QLabel>("parameters"), listed(bench.audit)),
                 "|还没有型号|model/五辐:1> model/钢圈:2>");
    }

    void exportedModelComesBackExactly()
    {
        Bench bench;
        QString error;
        bench.models->setCalibrated("五辐", true, &error);
        bench.engine.solutions["工位1"]["五辐"]["rim_radius"] = 604.1234567890123;
        const QString path = bench.home.path("/导出 五辐.json");
        bench.choose("五辐");
        bench.driver().press("exportButton");
        bench.giveFile(path);
        QVERIFY(bench.driver().message().startsWith("已导出到"));

        Bench other;
        other.engine.solutions.remove("工位2");
        other.driver().press("importButton");
        other.giveFile(path);
        QVERIFY(other.editDriver().message().contains("已存在"));
        other.editDriver().type("nameEdit", "五辐甲");
        QVERIFY(other.editDriver().message().contains("已被型号五辐使用"));
        other.editDriver().type("indexEdit", "8");
        QCOMPARE(other.editDriver().message(), "没有方案工位2，其参数不导入");
        other.editDriver().press("okButton");
        QCOMPARE(other.listed(), "五辐=1 五辐甲=8* 钢圈=2");
        QCOMPARE(other.engine.solutions["工位1"]["五辐甲"], bench.engine.solutions["工位1"]["五辐"]);
    }

    void badFileIsRefused_data()
    {
        const QByteArray start = "{\"format\": \"valvecell-model\", \"version\": 1, \"name\": \"N\", \"plcIndex\": 5";
        Table::of<QByteArray, QString>(
            {{"empty", QByteArray(), ""},
             {"cut", start, "line 1"},
             {"picture", QByteArray("\x89PNG\r\n\x1a\n\0\0", 10), ""},
             {"other JSON", "{\"name\": \"N\"}", "不是型号文件"},
             {"newer", QByteArray(start).replace("\"version\": 1", "\"version\": 2") + "}", "版本"},
             {"no parameters", start + "}", "参数部分有误"},
             {"nested", start + ", \"parameters\": {\"工位1\": {\"rim_radius\": [1]}}}", "参数部分有误"},
             {"endless", QByteArray(1024 * 1024 + 1, ' '), "文件太大"}});
    }
    void badFileIsRefused()
    {
        const auto [content, told] = Table::row<QByteArray, QString>();
        Bench bench;
        bench.home.write("/坏.json", content);
        bench.driver().press("importButton");
        bench.giveFile(bench.home.path("/坏.json"));
        QVERIFY(!bench.edit().isVisible());
        QVERIFY2(bench.driver().message().contains("坏.json") && bench.driver().message().contains(told),
                 qPrintable(bench.driver().message()));
        QCOMPARE(bench.listed(), "五辐=1 钢圈=2");
    }

    void valuesThatTheEngineRefusesAreNotImported()
    {
        Bench bench;
        bench.home.write("/N.json",
                         "{\"format\": \"valvecell-model\", \"version\": 1, \"name\": \"N\", \"plcIndex\": 5, "
                         "\"parameters\": {\"工位1\": {\"rim_radius\": 9}, \"工位2\": {\"rim_radius\": -1}}}");
        bench.driver().press("importButton");
        bench.giveFile(bench.home.path("/N.json"));
        bench.engine.unwritable = "工位2";
        bench.editDriver().press("okButton");
        QVERIFY(bench.editDriver().message().contains("工位2: no space left"));
        QCOMPARE(bench.listed(), "五辐=1 钢圈=2");
        QCOMPARE(bench.rims("N"), "-|-");
    }

    void modelRemovedInAnotherWindowWhileItIsEdited()
    {
        Bench bench;
        QModelMangerUI other(*bench.models, &bench.engine);
        bench.choose("五辐");
        bench.driver().press("modifyButton");
        QString error;
        other.show();
        DialogDriver second(other);
        second.get<QTableView>("table")->selectRow(0);
        second.act({"removeButton", "firstAnswer"});
        QCOMPARE(bench.driver().get<QTableView>("table")->model()->rowCount(), 1);
        QCOMPARE(bench.editDriver().message(), "型号五辐已不存在");
        QVERIFY(!bench.editDriver().canPress("okButton"));
    }

    void withoutAnEngineTheLibraryStillWorks()
    {
        Bench bench(false);
        bench.choose("五辐");
        QVERIFY(!bench.driver().get<QLabel>("parameters")->isVisible());
        bench.driver().press("copyButton");
        bench.editDriver().press("okButton");
        QCOMPARE(bench.listed(), "五辐=1 五辐 2=3 钢圈=2");
    }

    void messagesFollowTheLanguage()
    {
        Bench bench;
        bench.choose("五辐");
        bench.driver().press("modifyButton");
        bench.editDriver().type("indexEdit", "");
        const English english;
        QTRY_COMPARE(bench.edit().windowTitle(), "Modify model");
        QCOMPARE(bench.editDriver().message(), "PLC index: a number is needed");
        QCOMPARE(bench.driver().get<QTableView>("table")->model()->headerData(2, Qt::Horizontal), "Calibration");
        QTRY_COMPARE(bench.driver().clipped() + bench.editDriver().clipped(), QStringList());
    }
};

QTEST_MAIN(ModelManagerUiTest)
#include "tst_modelmangerui.moc"
