#include "workflow/TriggerDispatch.h"

#include "common/Scheduler.h"
#include "config/ksGlobalConfig.h"
#include "workflow/IZdCtrl.h"
#include "workflow/PlcLink.h"

TriggerDispatch::TriggerDispatch(ksGlobalConfig& config, PlcLink& link, const Scheduler& scheduler, Capture capture,
                                 QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_link(link)
    , m_scheduler(scheduler)
    , m_log(scheduler)
    , m_capture(std::move(capture))
{
}

/// The PLC repeats its frame; the same pair again changes nothing and is not looked up.
void TriggerDispatch::onModelIndices(int index1, int index2)
{
    const bool repeated = index1 == m_lastIndices[0] && index2 == m_lastIndices[1];
    if (!m_config.onlineMode || repeated || !m_controller)
        return;
    m_lastIndices[0] = index1;
    m_lastIndices[1] = index2;
    const QStringList names = m_controller->stationNames();
    for (const QString& name : names) {
        const IStation* target = m_controller->station(name);
        const int station = m_config.stationOfSolution(name);
        if (target && station > 0)
            switchModel(station, *target, m_lastIndices[station - 1]);
    }
}

/// The model follows a changed index only; whether the table still has it is looked at each time.
void TriggerDispatch::switchModel(int station, const IStation& target, qint32 index)
{
    QString model;
    target.modelOfPlcIndex(model, index);
    StationState& own = state(station);
    const bool changed = own.plcIndex != index;
    if (changed) {
        own.plcIndex = index;
        own.model = model;
    }
    own.modelValid = !model.isEmpty();
    if (own.modelValid)
        modelFound(station, index, changed);
    else
        modelMissing(station, index, changed);
}

/// An index below 1 clears the station on purpose, so the panel shows the others only.
void TriggerDispatch::modelMissing(int station, qint32 index, bool changed)
{
    if (changed)
        emit sgSystemLog(m_log.notSwitched(station, index));
    if (index > 0)
        emit sgShowLog(station, m_log.noModel(station, index));
}

void TriggerDispatch::modelFound(int station, qint32 index, bool changed)
{
    if (!changed)
        return;
    const QString& model = state(station).model;
    const QString text = m_log.switched(station, model, index);
    emit sgSystemLog(text);
    emit sgShowLog(station, text);
    m_config.station(station).runModel = model;
    emit sgSelModel(station, model);
}

void TriggerDispatch::onTrigger(int station)
{
    if ((station != 1 && station != 2) || isFiltered(station))
        return;
    if (mayCapture(station))
        capture(station);
    else
        refuse(station);
}

bool TriggerDispatch::isFiltered(int station)
{
    constexpr qint64 nsInMs = 1000 * 1000;
    const qint64 now = m_scheduler.elapsedNs();
    if (now < state(station).filteredUntil)
        return true;
    state(station).filteredUntil = now + qMax(0, m_config.trigerFilter) * nsInMs;
    return false;
}

bool TriggerDispatch::mayCapture(int station)
{
    return !m_config.onlineMode || !m_config.useClearProtect || state(station).modelValid;
}

void TriggerDispatch::capture(int station)
{
    emit captureStarted(station);
    m_capture(m_config.station(station).camKey);
}

void TriggerDispatch::refuse(int station)
{
    const StationState& own = state(station);
    const bool answered = own.plcIndex >= 1; // kept: a cleared index gets no answer, the PLC program counts on it
    if (answered)
        m_link.sendResult(station, plc::refusedAngle, 0, 0);
    emit sgShowLog(station, m_log.noPicture(own.plcIndex));
    emit sgSystemLog(m_log.refused(station, own.model, own.plcIndex, answered));
    emit captureRefused(station, answered);
}
