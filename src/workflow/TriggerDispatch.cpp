#include "workflow/TriggerDispatch.h"

#include "config/ksGlobalConfig.h"
#include "workflow/IStation.h"
#include "workflow/IZdCtrl.h"
#include "workflow/LogTime.h"
#include "workflow/PlcLink.h"

TriggerDispatch::TriggerDispatch(ksGlobalConfig& config, PlcLink& link, Capture capture, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_link(link)
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

/// An index below 1 clears the station on purpose, so the panel is told of the others only.
void TriggerDispatch::modelMissing(int station, qint32 index, bool changed)
{
    const QString number = QString::number(index);
    if (changed) {
        const QString format = index > 0
                                   ? QStringLiteral("★工位%1:型号切换失败,对应的索引不存在,型号索引ID为[%2],时间:%3")
                                   : QStringLiteral("★工位%1:型号清零,型号索引ID为[%2],时间:%3");
        emit sgSystemLog(format.arg(QString::number(station), number, logTime()));
    }
    if (index > 0) {
        // The two commas differ, and are kept: plants filter their logs by these texts.
        const QString format = station == 1 ? QStringLiteral("%1:型号设置失败,模型库中不存在索引%2")
                                            : QStringLiteral("%1:型号设置失败，模型库中不存在索引%2");
        emit sgShowLog(station, format.arg(logTimeColon(), number));
    }
}

void TriggerDispatch::modelFound(int station, qint32 index, bool changed)
{
    if (!changed)
        return;
    const QString& model = state(station).model;
    const QString text = QStringLiteral("★工位%1:切换型号为[%2],型号索引ID为[%3],时间:%4")
                             .arg(QString::number(station), model, QString::number(index), logTime());
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
    QDeadlineTimer& filter = state(station).filter;
    if (!filter.hasExpired())
        return true;
    if (m_config.trigerFilter > 0)
        filter = QDeadlineTimer(m_config.trigerFilter, Qt::PreciseTimer);
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
    const QString index = QString::number(own.plcIndex);
    const bool answered = own.plcIndex >= 1; // kept: a cleared index gets no answer, the PLC program counts on it
    if (answered)
        m_link.sendResult(station, plc::kRefusedAngle, 0, 0);
    emit sgShowLog(station,
                   QStringLiteral("%1:该型号ID:%2在模型库中不存在，不能拍照！！！").arg(logTimeColon(), index));
    const QString format =
        answered ? QStringLiteral("●工位%1:收到触发信号,因索引不合法所以没触发相机拍照,发送了999角度数据,型号为[%2],"
                                  "型号索引ID为[%3],时间:%4")
                 : QStringLiteral("●工位%1:收到触发信号,因索引不合法所以没触发相机拍照,型号为[%2],型号索引ID为[%3],"
                                  "时间:%4");
    const QString model = own.model.isEmpty() ? QStringLiteral("空") : own.model;
    emit sgSystemLog(format.arg(QString::number(station), model, index, logTime()));
    emit captureRefused(station, answered);
}
