#include "dialogs/DialogDriver.h"
#include "dialogs/testmode/QTestWidget.h"

namespace {

/// A test widget, and what it asked for, in order: "start", "stop", "snap1", "snap2" or an interval.
struct Bench
{
    QTestWidget dialog;
    DialogDriver driver{dialog};
    QStringList wanted;

    Bench()
    {
        const QMap<int, QString> names{{0, "stop"}, {1, "start"}, {11, "snap1"}, {12, "snap2"}};
        QObject::connect(&dialog, &QTestWidget::sgTestMode, [=](int mode) { wanted << names.value(mode, "?"); });
        QObject::connect(&dialog, &QTestWidget::intervalChanged, [=](int ms) { wanted << QString::number(ms); });
        dialog.show();
    }
};

} // namespace

class TestModeTest : public QObject
{
    Q_OBJECT

private slots:
    void everyButtonAsksForItsOwn()
    {
        Bench bench;
        bench.driver.act({"snap1Button", "snap2Button", "startButton"});
        QVERIFY(!bench.driver.canPress("startButton"));
        bench.driver.press("stopButton");
        QVERIFY(bench.driver.canPress("startButton") && !bench.driver.canPress("stopButton"));
        QCOMPARE(bench.wanted, QStringList({"snap1", "snap2", "start", "stop"}));
        QTRY_COMPARE(bench.driver.clipped(), QStringList());
        bench.dialog.setOneStation(true);
        QVERIFY(!bench.driver.get<QWidget>("snap2Button")->isVisible());
        bench.driver.press("startButton");
        bench.dialog.close();
        QCOMPARE(bench.wanted.mid(4), QStringList({"start", "stop"}));
        bench.dialog.show();
        bench.dialog.reject();
        QCOMPARE(bench.wanted.size(), 6);
    }

    void intervalIsToldBeforeTheStartThatUsesIt()
    {
        Bench bench;
        QVERIFY(QTest::qWaitForWindowActive(&bench.dialog)); // shortcuts are the active window's
        bench.driver.type("intervalEdit", "２50");
        QCOMPARE(bench.wanted, QStringList());
        QTest::keyClick(bench.driver.get<QLineEdit>("intervalEdit"), Qt::Key_S, Qt::AltModifier);
        QTRY_COMPARE(bench.wanted, QStringList({"250", "start"}));
        bench.driver.type("intervalEdit", "300");
        QTest::keyClick(bench.driver.get<QLineEdit>("intervalEdit"), Qt::Key_Return);
        QCOMPARE(bench.wanted, QStringList({"250", "start", "300"}));
    }

    void wrongIntervalCannotStart()
    {
        Bench bench;
        for (const char* typed : {"", "99", "3600001", "abc", "0", "-500", "1e3"}) {
            bench.driver.type("intervalEdit", typed);
            QTest::keyClick(bench.driver.get<QLineEdit>("intervalEdit"), Qt::Key_Return);
            QVERIFY2(bench.driver.message().startsWith("触发间隔："), typed);
            bench.driver.press("startButton");
        }
        QCOMPARE(bench.wanted, QStringList());
        QVERIFY(bench.dialog.isVisible());
        bench.dialog.reject();
        QCOMPARE(bench.driver.text("intervalEdit"), "1000");
    }
};

QTEST_MAIN(TestModeTest)
#include "tst_testmode.moc"
