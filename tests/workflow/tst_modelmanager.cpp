#include "db/QSqliteWheelHubZd.h"
#include "support/TempHome.h"
#include "workflow/ModelManager.h"

namespace {

struct Cell
{
    TempHome home;
    QSqliteWheelHubZd library{home.path("/DBFiles/")};
    PlcIndexTable indices{home.path()};

    Cell()
    {
        QDir().mkpath(home.path("/DBFiles"));
        QVERIFY(library.createTable());
    }

    /// The table of a station as the file holds it, and the library, in one text each.
    QString stored(const QString& station) const
    {
        PlcIndexTable file(home.path());
        file.load();
        QStringList entries;
        const auto table = file.table(station);
        for (auto it = table.begin(); it != table.end(); ++it)
            entries << it.key() + '=' + QString::number(it.value());
        return entries.join(' ');
    }
    QString listed(const ModelManager& manager) const
    {
        QStringList entries;
        for (int row = 0; row < manager.modelCount(); ++row)
            entries << manager.modelName(row) + '=' + QString::number(manager.plcIndex(row));
        return entries.join(' ');
    }
};

const QStringList kStations{"工位1", "工位2"};

} // namespace

class ModelManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void libraryAndTablesAgreeThroughTheLifeOfAModel()
    {
        Cell cell;
        ModelManager manager(cell.library, cell.indices, kStations);
        QString error;
        QVERIFY2(manager.addModel("五辐", 1, &error) && manager.addModel("钢圈", 2, &error), qPrintable(error));
        QVERIFY2(manager.changeIndex("钢圈", 7, &error), qPrintable(error));
        QVERIFY2(manager.renameModel("五辐", "A五辐", &error), qPrintable(error));
        QVERIFY2(manager.setCalibrated("钢圈", true, &error), qPrintable(error));
        for (const QString& station : kStations)
            QCOMPARE(cell.stored(station), QStringLiteral("A五辐=1 钢圈=7"));
        QCOMPARE(cell.listed(manager), QStringLiteral("A五辐=1 钢圈=7"));
        QVERIFY(!manager.isCalibrated(0) && manager.isCalibrated(1));
        QVERIFY2(manager.removeModel("A五辐", &error), qPrintable(error));
        const ModelManager again(cell.library, cell.indices, kStations);
        QCOMPARE(cell.listed(again), QStringLiteral("钢圈=7"));
        QCOMPARE(cell.stored("工位2"), QStringLiteral("钢圈=7"));
        QCOMPARE(cell.indices.modelOf("工位1", 7), QStringLiteral("钢圈"));
    }

    void whatCannotBeIsRefusedWithAReason_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("reason");
        QTest::newRow("empty") << "" << 5 << "";
        QTest::newRow("apostrophe") << "O'Neill" << 5 << "'";
        QTest::newRow("path") << "../五辐" << 5 << "";
        QTest::newRow("present") << "五辐" << 5 << "五辐";
        QTest::newRow("index taken") << "新" << 1 << "五辐";
        QTest::newRow("index 0") << "新" << 0 << "0";
        QTest::newRow("index beyond a word") << "新" << 32768 << "32768";
    }
    void whatCannotBeIsRefusedWithAReason()
    {
        QFETCH(QString, name);
        QFETCH(int, index);
        QFETCH(QString, reason);
        Cell cell;
        ModelManager manager(cell.library, cell.indices, kStations);
        QString error;
        QVERIFY(manager.addModel("五辐", 1, &error));
        QVERIFY(!manager.addModel(name, index, &error));
        QVERIFY2(!error.isEmpty() && error.contains(reason), qPrintable(error));
        QCOMPARE(cell.listed(manager), QStringLiteral("五辐=1"));
        QCOMPARE(cell.stored("工位1"), QStringLiteral("五辐=1"));
    }

    void tableThatCannotBeWrittenLeavesTheLibraryAsItWas()
    {
        Cell cell;
        ModelManager manager(cell.library, cell.indices, kStations);
        QString error;
        QVERIFY(manager.addModel("五辐", 1, &error));
        QVERIFY(QDir(cell.home.path("/user")).removeRecursively());
        cell.home.write("/user", "a file where the folder should be");
        QVERIFY(!manager.addModel("钢圈", 2, &error));
        QVERIFY2(error.contains("plcIndex.json"), qPrintable(error));
        QVERIFY(!manager.changeIndex("五辐", 3, &error));
        QVERIFY(!manager.renameModel("五辐", "六辐", &error));
        QVERIFY(!manager.removeModel("五辐", &error));
        QCOMPARE(cell.listed(manager), QStringLiteral("五辐=1"));
        QCOMPARE(cell.indices.modelOf("工位1", 1), QStringLiteral("五辐"));
    }

    void tableWrittenByHandIsAdopted()
    {
        Cell cell;
        cell.home.write("/user/plcIndex.json",
                        "{\"工位1\": [{\"Name\": \"五辐\", \"PlcIndex\": 4}, {\"Name\": \"坏'名\", \"PlcIndex\": 5}]}");
        cell.indices.load();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("坏'名"));
        ModelManager manager(cell.library, cell.indices, kStations);
        QCOMPARE(cell.listed(manager), QStringLiteral("五辐=4"));
        manager.setCurrentModel("五辐");
        QVERIFY(manager.isCurrent(0));
    }

    void stationsMayHaveTheirOwnIndices()
    {
        Cell cell;
        ModelManager manager(cell.library, cell.indices, kStations);
        QString error;
        QVERIFY(manager.addModel("五辐", 1, &error));
        QVERIFY(!manager.setStationTable("工位2", {{"没有", 9}}, &error));
        QVERIFY2(error.contains("没有"), qPrintable(error));
        QVERIFY(manager.setStationTable("工位2", {{"五辐", 9}}, &error));
        QCOMPARE(cell.stored("工位1"), QStringLiteral("五辐=1"));
        QCOMPARE(cell.stored("工位2"), QStringLiteral("五辐=9"));
    }
};

QTEST_GUILESS_MAIN(ModelManagerTest)
#include "tst_modelmanager.moc"
