#include "support/ManualScheduler.h"
#include "support/Table.h"
#include "workflow/CTrigDetector.h"

#include <QtTest>

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

private:
    ManualScheduler m_scheduler;
    int m_limit = 0;
    QScopedPointer<CTrigDetector> m_detector;
};

QTEST_GUILESS_MAIN(TrigDetectorTest)
#include "tst_trigdetector.moc"
