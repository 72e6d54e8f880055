#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

/// The accountant of one station: counts triggers sent and images received, notices when an image is missing, filters
/// bursts of triggers, and puts the two counters back in step. It reports to the debug stream only. GUI thread.
class CTrigDetector : public QObject
{
    Q_OBJECT

public:
    /// Milliseconds since the epoch; the clock may be set back.
    using Clock = std::function<qint64()>;
    /// How many triggers of a burst are refused before one is taken.
    using BurstLimit = std::function<int()>;

    /// With the system's clock and the setting "TrigDetector/FilterTime".
    explicit CTrigDetector(QObject* parent = nullptr);
    CTrigDetector(Clock clock, BurstLimit burstLimit, QObject* parent = nullptr);

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
    const Clock m_clock;
    const BurstLimit m_burstLimit;
    int m_triggerCount = 0;
    int m_nReceiveCount = 0;
    int m_errorRun = 0; ///< checks in a row that found an image missing
    QTimer m_check;
    int m_burst = 0; ///< triggers in a row that came too fast
    qint64 m_lastTrigger;
};
