#pragma once

#include "common/Scheduler.h"

#include <QObject>

/// The accountant of one station: counts triggers sent and images received, notices when an image is missing, filters
/// bursts of triggers, and puts the two counters back in step. It reports to the debug stream only. GUI thread.
class CTrigDetector : public QObject
{
    Q_OBJECT

public:
    /// How many triggers of a burst are refused before one is taken.
    using BurstLimit = std::function<int()>;

    /// `scheduler` outlives the detector.
    CTrigDetector(Scheduler& scheduler, BurstLimit burstLimit, QObject* parent = nullptr);

    /// Checks from now on every 4000 ms; both answer true.
    bool startChecking();
    bool stopChecking();

    /// Puts the receive count on the trigger count. True.
    bool correct();

    /// True when both counts are equal.
    bool checkResult() const;

    /// To be called for each trigger that comes in; true to take it. A trigger that comes less than 350 ms after the
    /// one before is refused, until more than the limit were.
    bool filterBurst();

    int triggerCount() const { return m_triggerCount; }
    int receiveCount() const { return m_nReceiveCount; }
    int errorRun() const { return m_errorRun; }

signals:
    /// An image is missing, for so many checks in a row.
    void sgErrorTrig(int errorRun);
    void sgSnapImage();

public slots:
    void onChecker();

    /// Counts a trigger, whatever the argument. Returns the new count; -1 when one too many is outstanding already.
    int addTrigCount(int);

    /// Counts an image, whatever the argument.
    void addRevCount(int);

private:
    const Scheduler& m_scheduler;
    const BurstLimit m_burstLimit;
    int m_triggerCount = 0;
    int m_nReceiveCount = 0;
    int m_errorRun = 0; ///< checks in a row that found an image missing
    std::unique_ptr<Scheduler::Timer> m_check;
    int m_burst = 0;      ///< triggers in a row that came too fast
    qint64 m_lastTrigger; ///< milliseconds since the epoch
};

/// What a test of the cell asks for; the values are fixed.
struct TestMode
{
    enum Value : int {
        Stop = 0,          ///< no more repeated triggers
        Start = 1,         ///< trigger repeatedly, at the interval that was set last
        SnapStation1 = 11, ///< one picture of station 1
        SnapStation2 = 12  ///< one picture of station 2
    };
};

/// Triggers again and again, for running the cell without a PLC. GUI thread.
class AutoTrigger : public QObject
{
    Q_OBJECT

public:
    /// `scheduler` outlives the trigger.
    explicit AutoTrigger(Scheduler& scheduler, QObject* parent = nullptr);

    /// From now on a trigger every so many milliseconds; a running one starts anew.
    void start(int ms) { m_timer->start(ms); }
    void stop() { m_timer->stop(); }

signals:
    void sgTrig();

private:
    std::unique_ptr<Scheduler::Timer> m_timer;
};
