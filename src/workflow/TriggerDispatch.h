#pragma once

#include "workflow/StationLog.h"
#include "workflow/Trigger.h"

#include <QObject>

#include <functional>
#include <limits>

class IStation;
class IZdCtrl;
class PlcLink;
class Scheduler;
class ksGlobalConfig;

/// Decides what a model-index frame and a trigger frame set going: switches the stations' models, filters triggers,
/// accepts them or refuses them. GUI thread; nothing waits.
class TriggerDispatch : public QObject
{
    Q_OBJECT

public:
    /// Takes a trigger on; false when too many of its station wait.
    using Accept = std::function<bool(const Trigger& trigger)>;

    /// All but `accept` outlive the dispatch.
    TriggerDispatch(ksGlobalConfig& config, PlcLink& link, const Scheduler& scheduler, Accept accept,
                    QObject* parent = nullptr);

    /// The controller comes later in the start-up than this object; until then model frames switch nothing.
    void setController(IZdCtrl* controller) { m_controller = controller; }

    /// A table of PLC indices, or a station's solution, is another now: the next model frame is looked up even when it
    /// repeats the last one.
    void forgetLastIndices() { m_looksAgain = true; }

public slots:
    void onModelIndices(int index1, int index2);
    /// A trigger of station 1 or 2; any other is ignored.
    void onTrigger(int station);
    /// A picture for a test, with the station's run model: neither filtered nor refused, and answered to nobody.
    void onTestTrigger(int station);

signals:
    /// A line for the station's log panel.
    void sgShowLog(int station, const QString& text);
    /// A line for the system log.
    void sgSystemLog(const QString& text);
    /// The station's model was switched.
    void sgSelModel(int station, const QString& model);
    /// The station's index means no model; below 1 it was cleared on purpose.
    void modelMissing(int station, int plcIndex);
    /// A trigger was refused; `answered`: the PLC got the 999 reply.
    void captureRefused(const Trigger& trigger, Refusal refusal, bool answered);

private:
    struct StationState
    {
        qint32 plcIndex = 0; ///< the last one accepted
        QString model;       ///< of that index; empty when it has none
        bool modelValid = false;
        qint64 filteredUntil = std::numeric_limits<qint64>::min(); ///< nanoseconds; triggers before are dropped
    };

    StationState& state(int station) { return m_states[station - 1]; }
    /// What the index asks for at one station.
    void switchModel(int station, const IStation* target, qint32 index);
    void reportMissing(int station, qint32 index, bool changed);
    /// Also starts the filter time of a trigger that is taken.
    bool isFiltered(int station);
    /// Offline, and without the protection, every trigger may.
    bool mayCapture(int station);
    /// A trigger of this moment.
    Trigger triggerOf(int station, Trigger::Source source);
    /// Says why on the panel and in the log; the PLC gets 999 unless its index is a cleared one.
    void refuse(Trigger trigger);
    /// More wait than can be answered in time.
    void refuseOverrun(const Trigger& trigger);

    ksGlobalConfig& m_config;
    PlcLink& m_link;
    const Scheduler& m_scheduler;
    const StationLog m_log;
    Accept m_accept;
    IZdCtrl* m_controller = nullptr;
    StationState m_states[2];
    int m_lastIndices[2] = {-1, -1};
    bool m_looksAgain = false;
};
