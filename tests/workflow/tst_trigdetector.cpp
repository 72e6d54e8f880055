#include "support/FakePort.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"
#include "workflow/CTrigDetector.h"
#include "workflow/PlcLink.h"

#include <limits>

namespace {

/// A line that keeps what its frames asked for.
struct AskedLink : PlcLink
{
    AskedLink()
    {
        connect(this, &PlcLink::modelIndexReceived, this,
                [this](int one, int two) { asked << QStringLiteral("models %1 %2").arg(one).arg(two); });
        connect(this, &PlcLink::triggerReceived, this, [this](int n) { asked << QStringLiteral("trigger %1").arg(n); });
        connect(this, &PlcLink::shutdownReceived, this, [this] { asked << QStringLiteral("shutdown"); });
    }

    void receive(int command, int word0, int word1 = 0)
    {
        SComFrame frame;
        frame.command = static_cast<quint8>(command);
        frame.data[0] = static_cast<qint16>(word0);
        frame.data[1] = static_cast<qint16>(word1);
        PlcLink::receive(frame);
    }

    QStringList asked;
};

} // namespace

/// The clock and the setting stand still until the test moves them.
class TrigDetectorTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_limit = 2;
        m_detector.reset(new CTrigDetector(m_scheduler, [this] { return m_limit; }));
    }

    void secondTriggerWithoutAnImageIsNotCounted()
    {
        QCOMPARE(m_detector->addTrigCount(0), 1);
        QTest::ignoreMessage(QtWarningMsg, "add trig count error, trig: 1 , rev: 0");
        QCOMPARE(m_detector->addTrigCount(0), -1);
        QCOMPARE(m_detector->triggerCount(), 1);
        QTest::ignoreMessage(QtWarningMsg, "trig failed, trig count: 1 ; rev count: 0");
        QVERIFY(!m_detector->checkResult());
        QTest::ignoreMessage(QtDebugMsg, "rev result, count =   1");
        m_detector->addRevCount(0);
        QTest::ignoreMessage(QtDebugMsg, "trig successful, trig count: 1");
        QVERIFY(m_detector->checkResult());
        QCOMPARE(m_detector->addTrigCount(0), 2);
    }

    void imageWithoutATriggerIsPutRightAtTheNextCheck()
    {
        const QSignalSpy missing(m_detector.data(), &CTrigDetector::sgErrorTrig);
        QTest::ignoreMessage(QtWarningMsg, "addRevCount, rev bigger than trig");
        QTest::ignoreMessage(QtDebugMsg, "rev result, count =   1");
        m_detector->addRevCount(0);
        QTest::ignoreMessage(QtDebugMsg, "trig < rece");
        QTest::ignoreMessage(QtDebugMsg, "m_nReceiveCount = m_nTrigCoun");
        m_detector->onChecker();
        QCOMPARE(m_detector->receiveCount(), 0);
        QCOMPARE(missing.count(), 0);
    }

    void missingImageIsToldAtEveryCheckUntilItComes()
    {
        const QSignalSpy missing(m_detector.data(), &CTrigDetector::sgErrorTrig);
        m_detector->onChecker();
        m_detector->addTrigCount(0);
        m_detector->onChecker();
        m_detector->onChecker();
        QCOMPARE(missing.count(), 2);
        QCOMPARE(missing[1][0].toInt(), 2);
        m_detector->addRevCount(0);
        QCOMPARE(m_detector->errorRun(), 0);
        m_detector->onChecker();
        m_detector->addTrigCount(0);
        m_detector->onChecker();
        QCOMPARE(missing[2][0].toInt(), 1);
    }

    void correctingPutsTheCountersInStep()
    {
        m_detector->addTrigCount(0);
        m_detector->onChecker();
        QTest::ignoreMessage(QtDebugMsg, "correct trig and rev");
        QVERIFY(m_detector->correct());
        QCOMPARE(m_detector->receiveCount(), 1);
        QCOMPARE(m_detector->errorRun(), 0);
    }

    void burstIsRefusedUntilTheLimit_data()
    {
        // ms before each trigger     // one letter a trigger
        using Gaps = QVector<int>;
        Table::of<int, QVector<int>, QString>(
            {{"limit 2, every 100 ms", 2, Gaps{400, 100, 100, 100, 100, 100, 100, 100, 100}, "ynnnynnny"},
             {"right after the start", 2, Gaps{100}, "n"},
             {"pause of exactly 350 ms", 2, Gaps{350, 350}, "yy"},
             {"pause of 349 ms", 2, Gaps{350, 349}, "yn"},
             {"pause ends the burst", 2, Gaps{350, 10, 10, 400, 10, 10, 10, 10}, "ynnynnny"},
             {"limit 0", 0, Gaps{350, 10, 10, 10}, "ynyn"},
             {"limit below 0", -1, Gaps{350, 10, 10}, "yyy"}});
    }
    void burstIsRefusedUntilTheLimit()
    {
        const auto [limit, gaps, expected] = Table::row<int, QVector<int>, QString>();
        m_limit = limit;
        QString taken;
        for (const int gap : gaps) {
            m_scheduler.advance(gap);
            taken += m_detector->filterBurst() ? 'y' : 'n';
        }
        QCOMPARE(taken, expected);
    }

    void clockIsSetBackInABurst()
    {
        m_scheduler.advance(400);
        QVERIFY(m_detector->filterBurst());
        m_scheduler.setClock(m_scheduler.now().addSecs(-3600));
        QVERIFY(m_detector->filterBurst());
        m_scheduler.advance(100); // counts from the clock as it is now
        QVERIFY(!m_detector->filterBurst());
    }

    void checkingRunsOnATimerThatCanBeStopped()
    {
        const QSignalSpy missing(m_detector.data(), &CTrigDetector::sgErrorTrig);
        m_detector->addTrigCount(0);
        QVERIFY(m_detector->startChecking());
        m_scheduler.advance(3999);
        QCOMPARE(missing.count(), 0);
        m_scheduler.advance(4001);
        QCOMPARE(missing.count(), 2);
        QVERIFY(m_detector->stopChecking());
        m_scheduler.advance(100000);
        QCOMPARE(missing.count(), 2);
    }

    void softwareTriggerRepeatsUntilItIsStopped()
    {
        AutoTrigger trigger(m_scheduler);
        const QSignalSpy triggers(&trigger, &AutoTrigger::sgTrig);
        trigger.start(100);
        m_scheduler.advance(50);
        trigger.start(100);
        m_scheduler.advance(300);
        QCOMPARE(triggers.count(), 3);
        trigger.stop();
        m_scheduler.advance(1000);
        QCOMPARE(triggers.count(), 3);
    }

    void resultIsCutNeverRounded_data()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        Table::of<int, double, double, double, QByteArray, QString>(
            {{"plain", 1, 123.4567, 60.25, 120.125, "F", "0 0 123 456 60 250 120 125"},
             {"negative x", 2, 0.0, -2.5, -0.75, "G", "0 0 0 0 -2 -500 0 -750"},
             {"negative angle", 1, -30.25, 12.3456, 0.0, "F", "0 0 329 750 12 345 0 0"},
             {"almost a turn", 1, 359.9996, 0.0, 0.0, "F", "0 0 359 999 0 0 0 0"},
             {"below -360", 1, -361.0, 0.0, 0.0, "F", "0 0 -1 0 0 0 0 0"},
             {"a turn", 2, 360.0, 1.0, 2.0, "GH", "0 0 360 0 1 0 2 0"},
             {"refused", 2, 999.0, 0.0, 0.0, "GH", "0 0 999 0 0 0 0 0"},
             {"largest", 1, 1.0, 32767.9, -32767.5, "F", "0 0 1 0 32767 900 -32767 -500"},
             {"no station", 0, 361.0, 0.0, 0.0, "GH", "0 0 361 0 0 0 0 0"},
             // A position that a frame would carry wrapped around is no position.
             {"x too large", 1, 90.0, 32768.0, 5.0, "FH", "0 0 361 0 0 0 0 0"},
             {"y is no number", 2, 90.0, 1.0, nan, "GH", "0 0 361 0 0 0 0 0"}});
    }
    void resultIsCutNeverRounded()
    {
        const auto [station, angle, x, y, commands, words] =
            Table::row<int, double, double, double, QByteArray, QString>();
        FakePort port;
        PlcLink link(&port);
        link.sendResult(station, angle, x, y);
        QCOMPARE(port.commands(), commands);
        QCOMPARE(port.words(0), words);
        if (port.sent.size() > 1)
            QCOMPARE(port.words(1), QStringLiteral("%1 50 0 0 0 0 0 0").arg(station + 5));
    }

    void heartbeatIsTheSameEveryTime()
    {
        FakePort port;
        PlcLink link(&port);
        link.sendHeartbeat();
        link.sendHeartbeat();
        QCOMPARE(told(port.commands(), port.words(1)), "CC|0 0 0 0 0 0 200 80");
    }

    void withoutASerialModuleNothingHappens()
    {
        PlcLink link;
        const QSignalSpy seen(&link, &PlcLink::frameSeen);
        link.sendHeartbeat();
        link.sendResult(1, 1, 2, 3);
        QCOMPARE(seen.size(), 0);
    }

    void framesOfTheStartUpWaitForItsEndAndTriggersAreDropped()
    {
        AskedLink link;
        link.hold();
        link.receive('C', 3);
        link.receive('P', 5);
        link.receive(0xF1, 0);
        link.receive('C', 4);
        QCOMPARE(link.asked.join(','), QString());
        link.release();
        QCOMPARE(link.asked.join(','), QString("models 4 0,shutdown"));
        link.receive('P', 6);
        QCOMPARE(link.asked.last(), QString("trigger 2"));
        link.release();
        QCOMPARE(link.asked.size(), 3);
    }

    void receivedFrameAsksForOneThing_data()
    {
        Table::of<int, int, QString>({{"models", int('C'), -7, "models -7 9"},
                                      {"trigger 1", int('P'), 5, "trigger 1"},
                                      {"trigger 2", int('P'), 6, "trigger 2"},
                                      {"trigger of no station", int('P'), 7, ""},
                                      {"shutdown", 0xF1, 0, "shutdown"},
                                      {"a reply's letter", int('F'), 5, ""},
                                      {"unknown", 0, 5, ""}});
    }
    void receivedFrameAsksForOneThing()
    {
        const auto [command, word0, expected] = Table::row<int, int, QString>();
        AskedLink link;
        link.receive(command, word0, 9);
        QCOMPARE(link.asked.join(','), expected);
    }

private:
    ManualScheduler m_scheduler;
    int m_limit = 0;
    QScopedPointer<CTrigDetector> m_detector;
};

QTEST_GUILESS_MAIN(TrigDetectorTest)
#include "tst_trigdetector.moc"
