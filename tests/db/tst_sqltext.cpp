#include "db/SqlBuilder.h"
#include "db/SqlText.h"
#include "support/Table.h"

#include <QtTest>

/// The statements byte for byte, and the texts that never reach them.
class SqlTextTest : public QObject
{
    Q_OBJECT

private slots:
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
        const QStringList refused{QString(61, 'a'), "",      "  ",     "18'", "50%1", "a\nb", QString(QChar(0)) + "a",
                                  halfACharacter,   "18/20", "18\\20", "..",  "18.",  "18 ",  "COM3"};
        for (const QString& name : taken + refused) {
            QString message;
            QVERIFY2(SqlText::carriesModelName(name, &message) == taken.contains(name), qPrintable(name));
            QCOMPARE(message.isEmpty(), SqlText::carriesModelName(name, nullptr));
        }
    }

    void operatorTypesATipOrARemark()
    {
        QVERIFY(SqlText::carries(QStringLiteral("气门孔 / OK"), nullptr));
        QVERIFY(!SqlText::carries("a\nb", nullptr));
        QVERIFY(SqlText::carriesFreeText("a\n\tb", nullptr));
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
};

QTEST_APPLESS_MAIN(SqlTextTest)
#include "tst_sqltext.moc"
