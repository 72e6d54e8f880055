#include "workflow/TriggerDispatch.h"

#include "common/Scheduler.h"
#include "config/ksGlobalConfig.h"
#include "workflow/IZdCtrl.h"
#include "workflow/PlcLink.h"

TriggerDispatch::TriggerDispatch(ksGlobalConfig& config, PlcLink& link, const Scheduler& scheduler, Accept accept,
                                 QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_link(link)
    , m_scheduler(scheduler)
    , m_log(scheduler)
    , m_accept(std::move(accept))
{
}

/// The PLC repeats its frame; the same pair again changes nothing and is not looked up.
void TriggerDispatch::onModelIndices(int index1, int index2)
{
    const bool repeated = !m_looksAgain && index1 == m_lastIndices[0] && index2 == m_lastIndices[1];
    if (!m_config.onlineMode || repeated || !m_controller)
        return;
    m_looksAgain = false;
    m_lastIndices[0] = index1;
    m_lastIndices[1] = index2;
    for (int station = 1; station <= 2; ++station) {
        const QString& solution = m_config.station(station).solution;
        if (!solution.isEmpty())
            switchModel(station, m_controller->station(solution), m_lastIndices[station - 1]);
    }
}

/// The model follows the index, and what the table says of it: a name that was added, or is another now, is a switch.
/// A solution that the engine does not list has no models, so that its station refuses rather than keeps silent.
void TriggerDispatch::switchModel(int station, const IStation* target, qint32 index)
{
    QString model;
    if (target)
        target->modelOfPlcIndex(model, index);
    StationState& own = state(station);
    const bool indexChanged = own.plcIndex != index;
    const bool changed = indexChanged || own.model != model;
    own.plcIndex = index;
    own.model = model;
    own.modelValid = !model.isEmpty();
    if (!own.modelValid)
        return reportMissing(station, index, changed);
    if (!changed)
        return;
    const QString text = m_log.switched(station, model, index);
    emit sgSystemLog(text);
    emit sgShowLog(station, text);
    m_config.station(station).runModel = model;
    emit sgSelModel(station, model);
}

/// An index below 1 clears the station on purpose, so the panel shows the others only.
void TriggerDispatch::reportMissing(int station, qint32 index, bool changed)
{
    emit modelMissing(station, index);
    if (changed)
        emit sgSystemLog(m_log.notSwitched(station, index));
    if (index > 0)
        emit sgShowLog(station, m_log.noModel(station, index));
}

Trigger TriggerDispatch::triggerOf(int station, Trigger::Source source)
{
    const StationConfig& config = m_config.station(station);
    Trigger trigger;
    trigger.source = source;
    trigger.station = station;
    trigger.camera = config.camKey;
    trigger.solution = config.solution;
    trigger.model = config.runModel;
    trigger.plcIndex = state(station).plcIndex;
    trigger.session = m_link.incomingSession();
    trigger.acceptedNs = source == Trigger::Plc ? m_link.incomingNs() : 0;
    return trigger;
}

void TriggerDispatch::onTrigger(int station)
{
    if ((station != 1 && station != 2) || isFiltered(station))
        return;
    const Trigger trigger = triggerOf(station, Trigger::Plc);
    if (!mayCapture(station))
        refuse(trigger);
    else if (!m_accept(trigger))
        refuseOverrun(trigger);
}

void TriggerDispatch::onTestTrigger(int station)
{
    if (station == 1 || station == 2)
        m_accept(triggerOf(station, Trigger::Test));
}

bool TriggerDispatch::isFiltered(int station)
{
    constexpr qint64 nsInMs = 1000 * 1000;
    // By when their frames came: a program that was held up gets several at once.
    const qint64 now = m_link.incomingNs() > 0 ? m_link.incomingNs() : m_scheduler.elapsedNs();
    if (now < state(station).filteredUntil)
        return true;
    state(station).filteredUntil = now + qMax(0, m_config.trigerFilter) * nsInMs;
    return false;
}

bool TriggerDispatch::mayCapture(int station)
{
    return !m_config.onlineMode || !m_config.useClearProtect || state(station).modelValid;
}

void TriggerDispatch::refuse(Trigger trigger)
{
    trigger.model = state(trigger.station).model;
    const bool answered = trigger.plcIndex >= 1; // kept: a cleared index gets no answer, the PLC program counts on it
    if (answered)
        m_link.sendResult(trigger.station, plc::refusedAngle, 0, 0, trigger.session);
    emit sgShowLog(trigger.station, m_log.noPicture(trigger.plcIndex));
    emit sgSystemLog(m_log.refused(trigger.station, trigger.model, trigger.plcIndex, answered));
    emit captureRefused(trigger, Refusal::NoModel, answered);
}

void TriggerDispatch::refuseOverrun(const Trigger& trigger)
{
    m_link.sendResult(trigger.station, plc::refusedAngle, 0, 0, trigger.session);
    emit sgShowLog(trigger.station, m_log.tooMany());
    emit captureRefused(trigger, Refusal::Overrun, true);
}
