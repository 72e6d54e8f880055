#include "db/OtherProgram.h"
#include "dialogs/models/ModelCell.h"
#include "support/Table.h"

class ModelManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void libraryAndTablesAgreeThroughTheLifeOfAModel()
    {
        ModelCell cell;
        QString error;
        QVERIFY2(cell.models->changeIndex("钢圈", 7, &error), qPrintable(error));
        QVERIFY2(cell.models->renameModel("五辐", "A五辐", &error), qPrintable(error));
        QVERIFY2(cell.models->setCalibrated("钢圈", true, &error), qPrintable(error));
        for (const char* station : {"工位1", "工位2"})
            QCOMPARE(cell.stored(station), "A五辐=1 钢圈=7");
        QCOMPARE(cell.listed(), "A五辐=1 钢圈=7*");
        QVERIFY2(cell.models->removeModel("A五辐", &error), qPrintable(error));
        cell.restart();
        QCOMPARE(told(cell.listed(), cell.stored("工位2"), cell.indices.modelOf("工位1", 7)), "钢圈=7*|钢圈=7|钢圈");
    }

    void whatCannotBeIsRefusedWithAReason_data()
    {
        Table::of<QString, int, QString>({{"empty", "", 5, ""},
                                          {"apostrophe", "O'Neill", 5, "'"},
                                          {"path", "../五辐", 5, ""},
                                          {"present", "五辐", 5, "五辐"},
                                          {"index taken", "新", 1, "五辐"},
                                          {"index 0", "新", 0, "0"},
                                          {"index beyond a word", "新", 32768, "32768"}});
    }
    void whatCannotBeIsRefusedWithAReason()
    {
        const auto [name, index, reason] = Table::row<QString, int, QString>();
        ModelCell cell;
        QString error;
        QVERIFY(!cell.models->addModel(name, index, &error));
        QVERIFY2(!error.isEmpty() && error.contains(reason), qPrintable(error));
        QCOMPARE(told(cell.listed(), cell.stored("工位1")), "五辐=1 钢圈=2|五辐=1 钢圈=2");
    }

    void tableThatCannotBeWrittenLeavesTheLibraryAsItWas()
    {
        ModelCell cell;
        QString error;
        cell.home.block();
        QVERIFY(!cell.models->addModel("多辐", 3, &error));
        QVERIFY2(error.contains("plcIndex.json"), qPrintable(error));
        QVERIFY(!cell.models->changeIndex("五辐", 3, &error));
        QVERIFY(!cell.models->renameModel("五辐", "六辐", &error));
        QVERIFY(!cell.models->removeModel("五辐", &error));
        QCOMPARE(told(cell.listed(), cell.indices.modelOf("工位1", 1)), "五辐=1 钢圈=2|五辐");
    }

    void libraryThatCannotBeWrittenLeavesTheTablesAsTheyWere()
    {
        ModelCell cell;
        QString error;
        OtherProgram other(cell.home.path("/DBFiles/wheelhubzd.db"));
        QVERIFY(other.run("BEGIN IMMEDIATE"));
        QVERIFY(!cell.models->removeModel("五辐", &error));
        QVERIFY2(error.contains("locked"), qPrintable(error));
        QCOMPARE(cell.listed() + cell.stored("工位1"), "五辐=1 钢圈=2五辐=1 钢圈=2");
    }

    void tableWrittenByHandIsAdopted()
    {
        ModelCell cell;
        for (const char* model : {"五辐", "钢圈"})
            QVERIFY(cell.library.deleteModel(model));
        cell.home.write("/user/plcIndex.json",
                        "{\"工位1\": [{\"Name\": \"五辐\", \"PlcIndex\": 4}, {\"Name\": \"坏'名\", \"PlcIndex\": 5}]}");
        cell.indices.load();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("坏'名"));
        cell.restart();
        QCOMPARE(cell.listed(), "五辐=4");
        cell.models->setCurrentModel("五辐");
        QVERIFY(cell.models->isCurrent(0));
    }

    void stationsMayHaveTheirOwnIndices()
    {
        ModelCell cell;
        QString error;
        QVERIFY(!cell.models->setStationTable("工位2", {{"没有", 9}}, &error));
        QVERIFY2(error.contains("没有"), qPrintable(error));
        QVERIFY(cell.models->setStationTable("工位2", {{"五辐", 9}}, &error));
        QCOMPARE(told(cell.stored("工位1"), cell.stored("工位2")), "五辐=1 钢圈=2|五辐=9");
    }
};

QTEST_GUILESS_MAIN(ModelManagerTest)
#include "tst_modelmanager.moc"
