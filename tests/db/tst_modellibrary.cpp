#include "OtherProgram.h"
#include "common/LookAlike.h"
#include "db/ModelModel.h"
#include "db/QSqliteWheelHubZd.h"
#include "db/SqlText.h"
#include "support/Table.h"

namespace {

/// The columns of a table with their types.
QStringList columns(const QString& file, const QString& table)
{
    return OtherProgram(file).column("select name || ' ' || type from pragma_table_info('" + table + "')");
}

struct TwoModels : IModelSource
{
    int modelCount() const override { return 2; }
    QString modelName(int row) const override { return QStringLiteral("W%1").arg(row); }
    int plcIndex(int row) const override { return row * 10; }
    bool isCalibrated(int row) const override { return row == 1; }
    bool isCurrent(int row) const override { return row == 1; }
};

} // namespace

/// The model library with its list, its statements byte for byte, and the texts that never reach them.
class ModelLibraryTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder.reset(new QTemporaryDir(QDir::tempPath() + QStringLiteral("/型号库-XXXXXX"))); }

    void libraryIsMadeOnTheFirstStart()
    {
        QSqliteWheelHubZd library(folder());
        QVERIFY(!library.addModel("W18", {{"md_index", 1}})); // not open yet
        QVERIFY(library.createTable() && library.createTable());
        QVERIFY(library.openReport().text.isEmpty());
        const QStringList expected{"md_unique VARCHAR(60)", "md_cali INT(1)",       "md_camKey VARCHAR(32)",
                                   "md_count INT(1)",       "md_id VARCHAR(2)",     "md_index INT(100)",
                                   "md_model VARCHAR(20)",  "md_stamp VARCHAR(32)", "md_text TEXT"};
        QCOMPARE(columns(file(), "e_wh_models"), expected);
    }

    void modelIsAddedReadChangedAndDeleted()
    {
        const QString name = QStringLiteral("轮毂18");
        QSqliteWheelHubZd library(folder());
        QVERIFY(library.createTable() && !library.addModel("", {{"md_index", 1}}));
        QVERIFY(!library.addModel(name, {}));
        QVERIFY(library.addModel(name, {{"md_index", 7}, {"md_text", "a\nb"}}));
        QVERIFY(!library.addModel(name, {{"md_index", 8}}) && !library.lastError().isEmpty());

        QVariant value;
        QVERIFY(library.readValue(name, "md_index", &value));
        QCOMPARE(value.toInt(), 7);
        QVERIFY(!library.readValue(name, "no_such_column", &value));
        QVERIFY(!library.readValue("W19", "md_index", &value));

        QVERIFY(library.updateValue(name, "md_index", 9) && !library.updateValue(name, "md_index", 10, 1));
        SqlValueMap record;
        QVERIFY(library.readRecord(name, &record));
        QCOMPARE(record.size(), 9);
        QCOMPARE(told(record["md_index"].toInt(), record["md_cali"].toInt(), record["md_text"].toString()), "9|0|a\nb");

        QVERIFY(library.addModel("W19", {{"md_index", 1}}));
        QCOMPARE(library.modelNames(), (QStringList{"W19", name}));
        QVERIFY(library.deleteModel(name));
        QVERIFY(library.deleteModel(name)); // as if it had been there
        QCOMPARE(library.modelNames(), QStringList{"W19"});
    }

    void nameWithAnApostropheFailsAndHarmsNothing()
    {
        QSqliteWheelHubZd library(folder());
        QVERIFY(library.createTable() && library.addModel("W18", {{"md_index", 1}}));
        QVERIFY(!library.addModel("o'k", {{"md_index", 1}}) && !library.updateValue("W18", "md_text", "o'k"));
        QVERIFY(!library.readRecord("o'k", nullptr));
        QCOMPARE(library.modelNames(), QStringList{"W18"});
    }

    void columnIsAddedOnlyOnceThereIsAModel()
    {
        QSqliteWheelHubZd library(folder());
        QVERIFY(!library.ensureColumn("md_extra", "TEXT") && library.createTable());
        QVERIFY(library.ensureColumn("md_extra", "TEXT"));
        QVERIFY(!columns(file(), "e_wh_models").contains("md_extra TEXT"));
        QVERIFY(library.addModel("W18", {{"md_index", 1}}) && library.ensureColumn("md_extra", "TEXT"));
        QVERIFY(library.ensureColumn("md_extra", "TEXT"));
        QVERIFY(columns(file(), "e_wh_models").contains("md_extra TEXT") && library.dropColumn("md_extra"));
        QVERIFY(!library.dropColumn("md_extra") && !columns(file(), "e_wh_models").contains("md_extra TEXT"));
    }

    void modelInformationIsKeptInATableOfItsOwn()
    {
        QSqliteWheelHubZd library(folder());
        QVERIFY(library.createTable());
        QVERIFY(library.saveModelInfo("_w18", "mf_time", "2024-05-01", {{"score", 97}, {"angle", 12.5}}));
        QVERIFY(!library.saveModelInfo("_w18", "mf_time", "2024-05-01", {{"score", 98}}));
        QCOMPARE(columns(file(), "e_zd_model_info_w18"),
                 (QStringList{"mf_time VARCHAR(90)", "angle VARCHAR(20)", "score VARCHAR(20)"}));
        QCOMPARE(OtherProgram(file()).value("select score from e_zd_model_info_w18"), QString("97"));
    }

    void relationThatOthersWriteIsRead()
    {
        QSqliteWheelHubZd library(folder());
        QVERIFY(library.createTable() && library.modelsOfCamera("cam1").isEmpty());
        OtherProgram other(file());
        other.run("create table r_wh_model_camera(model_id, camera_id, camera_key)");
        other.run("insert into r_wh_model_camera values('m1', 1, 'cam1'), ('m1', 'x', 'cam2'), ('m2', 2, 'cam1')");
        QCOMPARE(library.modelsOfCamera("cam1"), (QStringList{"m1", "m2"}));
        QCOMPARE(library.camerasOfModel("m1"), (QList<QPair<int, QString>>{{1, "cam1"}}));
    }

    void damagedLibraryIsKeptAsideAndTheCellRunsOn()
    {
        QFile damaged(file());
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write(QByteArray(8192, 'x'));
        damaged.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("wheelhubzd\\.db.*damaged-"));
        QSqliteWheelHubZd library(folder());
        QVERIFY(library.createTable() && library.addModel("W18", {{"md_index", 1}}));
        QCOMPARE(QFileInfo(library.openReport().keptAside).size(), 8192);
    }

    void listOfModelsShowsTheCurrentOneInGreen()
    {
        const TwoModels source;
        const ModelModel model(source);
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.columnCount(), 3);
        const auto at = [&model](int row, int column, int role) { return model.data(model.index(row, column), role); };
        QCOMPARE(told(at(1, 0, Qt::DisplayRole).toString(), at(1, 1, Qt::DisplayRole).toInt()), "W1|10");
        QCOMPARE(told(at(0, 2, Qt::DisplayRole).toString(), at(1, 2, Qt::DisplayRole).toString()), "未标定|已标定");
        QCOMPARE(at(0, 1, Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 255, 255));
        QCOMPARE(at(1, 1, Qt::BackgroundRole).value<QBrush>().color(), QColor(50, 250, 0, 80));
        QCOMPARE(at(0, 2, Qt::ForegroundRole).value<QBrush>().color(), QColor(255, 0, 25));
        QVERIFY(!at(0, 1, Qt::ForegroundRole).isValid());
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("PLC索引值"));
        QVERIFY(!model.headerData(3, Qt::Horizontal).isValid());
        QCOMPARE(model.headerData(3, Qt::Vertical).toInt(), 4);
    }

    void statementsAreComposedByteForByte_data()
    {
        using namespace SqlBuilder;
        const SqlValueMap map{{"b", 2}, {"a", "x"}, {"B", 0.5}};
        Table::of<QString, QString>(
            {{"insert", insertSql("t", map), "INSERT INTO t(B,a,b) VALUES('0.5','x','2')"},
             {"insert, apostrophe stays", insertSql("t", {{"a", "o'k"}}), "INSERT INTO t(a) VALUES('o'k')"},
             {"insert, value like a marker", insertSql("t", {{"a", "%1"}}), "INSERT INTO t(a) VALUES('%1')"},
             {"insert with key", insertSql("t", "k", "v", {{"a", 1}}), "INSERT INTO t(k, a) VALUES('v', '1')"},
             {"insert with key only", insertSql("t", "k", "v", {}), "INSERT INTO t(k) VALUES('v')"},
             {"select all", selectSql("t", {}, ""), "SELECT * FROM t"},
             {"select", selectSql("t", {"z", "a"}, "a = '1'"), "SELECT z,a FROM t WHERE a = '1'"},
             {"select, marker in the condition", selectSql("t", {"a"}, "b = '%2'"), "SELECT a FROM t WHERE b = 't'"},
             {"update", updateSql("t", map, ""), "UPDATE t SET B = '0.5',a = 'x',b = '2'"},
             {"update some", updateSql("t", {{"a", 1}}, "b = '2'"), "UPDATE t SET a = '1' WHERE b = '2'"},
             {"update nothing", updateSql("t", {}, "b = '2'"), "UPDATE t SET  WHERE b = '2'"},
             {"delete all", deleteSql("t", ""), "DELETE FROM t"},
             {"delete", deleteSql("t", "a = '1'"), "DELETE FROM t WHERE a = '1'"},
             {"add column", addColumnSql("t", "c", "INT(1)"), "ALTER TABLE t ADD COLUMN c INT(1)"},
             {"drop column", dropColumnSql("t", "c"), "ALTER TABLE t DROP c"},
             {"create", createTableSql("t", "k", "INT PRIMARY KEY", {{"b", "TEXT"}, {"a", "INT(1)"}}),
              "CREATE TABLE IF NOT EXISTS t (k INT PRIMARY KEY, a INT(1), b TEXT)"}});
    }
    void statementsAreComposedByteForByte()
    {
        const auto [sql, expected] = Table::row<QString, QString>();
        QCOMPARE(sql, expected);
    }

    void operatorTypesAModelName()
    {
        const QStringList taken{"W18-A", "轮毂 十八寸", QString(60, QChar(0x8f6e)), "50% off"};
        const QString halfACharacter(QChar(0xd83d));
        const QStringList refused{
            QString(61, 'a'), "",       "  ", "18'", "50%1", "a\nb", QString(QChar(0)) + "a",    halfACharacter,
            "18/20",          "18\\20", "..", "18.", "18 ",  "COM3", QStringLiteral("W18\u200b")};
        for (const QString& name : taken + refused) {
            QString message;
            QVERIFY2(SqlText::carriesModelName(name, &message) == taken.contains(name), qPrintable(name));
            QCOMPARE(message.isEmpty(), SqlText::carriesModelName(name, nullptr));
        }
    }

    void namesThatLookAlikeAreTheSame()
    {
        const QStringList alike{"W18-a",
                                "w18-A",
                                QStringLiteral("Ｗ１８－ａ"),
                                QStringLiteral("W18\u200b-a"),
                                "W18-a. .",
                                QStringLiteral("W18-a\u3000"),
                                QStringLiteral("\u2060W18-a")};
        for (const QString& name : alike)
            QVERIFY2(LookAlike::find({"x", alike[0]}, name) == alike[0], qPrintable(name));
        for (const char* other : {"W18 -a", "W18a", "W18-b", "W.18-a"})
            QVERIFY2(LookAlike::find(alike, other).isEmpty(), other);
        QVERIFY(LookAlike::hasInvisible(alike[3]) && !LookAlike::hasInvisible(alike[2]));
    }

    void operatorTypesATipOrARemark()
    {
        QVERIFY(SqlText::carries(QStringLiteral("气门孔 / OK"), nullptr));
        QVERIFY(!SqlText::carries("a\nb", nullptr) && SqlText::carriesFreeText("a\n\tb", nullptr));
        QVERIFY(!SqlText::carriesFreeText("it's", nullptr));
        QVERIFY(!SqlText::carriesFreeText(QString(5000, 'a'), nullptr));
    }

    void moduleDeliversATipThatNoStatementCarries()
    {
        const QString tip =
            SqlText::madeCarriable(QStringLiteral("can't\nfind ") + QChar(0xd83d) + QStringLiteral(" 孔"));
        QCOMPARE(tip, QStringLiteral("can\u2019t find ? 孔"));
        QVERIFY(SqlText::carries(tip, nullptr));
    }

    void everyModelNameBecomesASafeFolder()
    {
        const QVector<QPair<QString, QString>> folders{
            {"轮毂 18", "轮毂 18"},     {"", "_"},
            {"../../etc", "_._.._etc"}, {"..", "_"},
            {"C:\\x", "C__x"},          {"a.. .", "a"},
            {"nul.txt", "_nul.txt"},    {QString(90, QChar(0x8f6e)), QString(66, QChar(0x8f6e))}};
        for (const auto& [name, folder] : folders)
            QCOMPARE(SqlText::folderName(name), folder);
    }

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QString folder() const { return m_folder->path() + "/"; }
    QString file() const { return folder() + "wheelhubzd.db"; }
};

QTEST_GUILESS_MAIN(ModelLibraryTest)
#include "tst_modellibrary.moc"
