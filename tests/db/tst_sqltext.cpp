#include "db/SqlBuilder.h"
#include "db/SqlText.h"

#include <QtTest>

/// The statements byte for byte, and the texts that never reach them.
class tst_sqltext : public QObject
{
    Q_OBJECT

private slots:
    void statementsAreComposedByteForByte_data();
    void statementsAreComposedByteForByte();
    void operatorTypesAModelName_data();
    void operatorTypesAModelName();
    void operatorTypesATipOrARemark();
    void moduleDeliversATipThatNoStatementCarries();
    void everyModelNameBecomesASafeFolder_data();
    void everyModelNameBecomesASafeFolder();
};

void tst_sqltext::statementsAreComposedByteForByte_data()
{
    using namespace SqlBuilder;
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("expected");
    const SqlValueMap map{{"b", 2}, {"a", "x"}, {"B", 0.5}};
    QTest::newRow("insert") << insertSql("t", map) << "INSERT INTO t(B,a,b) VALUES('0.5','x','2')";
    QTest::newRow("insert, apostrophe stays") << insertSql("t", {{"a", "o'k"}}) << "INSERT INTO t(a) VALUES('o'k')";
    QTest::newRow("insert, value like a marker") << insertSql("t", {{"a", "%1"}}) << "INSERT INTO t(a) VALUES('%1')";
    QTest::newRow("insert with key") << insertSql("t", "k", "v", {{"a", 1}}) << "INSERT INTO t(k, a) VALUES('v', '1')";
    QTest::newRow("insert with key only") << insertSql("t", "k", "v", {}) << "INSERT INTO t(k) VALUES('v')";
    QTest::newRow("select all") << selectSql("t", {}, "") << "SELECT * FROM t";
    QTest::newRow("select") << selectSql("t", {"z", "a"}, "a = '1'") << "SELECT z,a FROM t WHERE a = '1'";
    QTest::newRow("select, marker in the condition")
        << selectSql("t", {"a"}, "b = '%2'") << "SELECT a FROM t WHERE b = 't'";
    QTest::newRow("update") << updateSql("t", map, "") << "UPDATE t SET B = '0.5',a = 'x',b = '2'";
    QTest::newRow("update some") << updateSql("t", {{"a", 1}}, "b = '2'") << "UPDATE t SET a = '1' WHERE b = '2'";
    QTest::newRow("update nothing") << updateSql("t", {}, "b = '2'") << "UPDATE t SET  WHERE b = '2'";
    QTest::newRow("delete all") << deleteSql("t", "") << "DELETE FROM t";
    QTest::newRow("delete") << deleteSql("t", "a = '1'") << "DELETE FROM t WHERE a = '1'";
    QTest::newRow("add column") << addColumnSql("t", "c", "INT(1)") << "ALTER TABLE t ADD COLUMN c INT(1)";
    QTest::newRow("drop column") << dropColumnSql("t", "c") << "ALTER TABLE t DROP c";
    QTest::newRow("create") << createTableSql("t", "k", "INT PRIMARY KEY", {{"b", "TEXT"}, {"a", "INT(1)"}})
                            << "CREATE TABLE IF NOT EXISTS t (k INT PRIMARY KEY, a INT(1), b TEXT)";
}

void tst_sqltext::statementsAreComposedByteForByte()
{
    QFETCH(QString, sql);
    QTEST(sql, "expected");
}

void tst_sqltext::operatorTypesAModelName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("taken");
    QTest::newRow("plain") << "W18-A" << true;
    QTest::newRow("chinese") << QStringLiteral("轮毂 十八寸") << true;
    QTest::newRow("sixty characters") << QString(60, QChar(0x8f6e)) << true;
    QTest::newRow("too long") << QString(61, 'a') << false;
    QTest::newRow("nothing") << "" << false;
    QTest::newRow("blanks") << "  " << false;
    QTest::newRow("apostrophe") << "18'" << false;
    QTest::newRow("marker") << "50%1" << false;
    QTest::newRow("percent alone") << "50% off" << true;
    QTest::newRow("line break") << "a\nb" << false;
    QTest::newRow("nul") << QString(QChar(0)) + "a" << false;
    QTest::newRow("half a character") << QString(QChar(0xd83d)) << false;
    QTest::newRow("slash") << "18/20" << false;
    QTest::newRow("backslash") << "18\\20" << false;
    QTest::newRow("parent folder") << ".." << false;
    QTest::newRow("dot at the end") << "18." << false;
    QTest::newRow("device") << "COM3" << false;
    QTest::newRow("blank at the end") << "18 " << false;
}

void tst_sqltext::operatorTypesAModelName()
{
    QFETCH(QString, name);
    QString message;
    QTEST(SqlText::carriesModelName(name, &message), "taken");
    QCOMPARE(message.isEmpty(), SqlText::carriesModelName(name, nullptr));
}

void tst_sqltext::operatorTypesATipOrARemark()
{
    QVERIFY(SqlText::carries(QStringLiteral("气门孔 / OK"), nullptr));
    QVERIFY(!SqlText::carries("a\nb", nullptr));
    QVERIFY(SqlText::carriesFreeText("a\n\tb", nullptr));
    QVERIFY(!SqlText::carriesFreeText("it's", nullptr));
    QVERIFY(!SqlText::carriesFreeText(QString(5000, 'a'), nullptr));
}

void tst_sqltext::moduleDeliversATipThatNoStatementCarries()
{
    const QString tip = SqlText::madeCarriable(QStringLiteral("can't\nfind ") + QChar(0xd83d) + QStringLiteral(" 孔"));
    QCOMPARE(tip, QStringLiteral("can\u2019t find ? 孔"));
    QVERIFY(SqlText::carries(tip, nullptr));
}

void tst_sqltext::everyModelNameBecomesASafeFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("folder");
    QTest::newRow("as it is") << QStringLiteral("轮毂 18") << QStringLiteral("轮毂 18");
    QTest::newRow("nothing") << ""
                             << "_";
    QTest::newRow("parent") << "../../etc"
                            << "_._.._etc";
    QTest::newRow("dots") << ".."
                          << "_";
    QTest::newRow("drive") << "C:\\x"
                           << "C__x";
    QTest::newRow("dots at the end") << "a.. ."
                                     << "a";
    QTest::newRow("device") << "nul.txt"
                            << "_nul.txt";
    QTest::newRow("long") << QString(90, QChar(0x8f6e)) << QString(66, QChar(0x8f6e));
}

void tst_sqltext::everyModelNameBecomesASafeFolder()
{
    QFETCH(QString, name);
    QTEST(SqlText::folderName(name), "folder");
}

QTEST_APPLESS_MAIN(tst_sqltext)
#include "tst_sqltext.moc"
