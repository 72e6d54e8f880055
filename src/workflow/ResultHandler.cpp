#include "workflow/ResultHandler.h"

#include "config/ksGlobalConfig.h"
#include "db/StationDB.h"
#include "workflow/CoordinateTransform.h"
#include "workflow/IResultStore.h"
#include "workflow/PlcLink.h"

ResultHandler::ResultHandler(const ksGlobalConfig& config, PlcLink& link, const Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_link(link)
    , m_log(scheduler)
{
    qRegisterMetaType<StationReading>();
}

/// Without a solution nobody knows for which station the result is: it is dropped.
void ResultHandler::onResult(const QVariantMap& map)
{
    const TaskResult result = TaskResult::fromMap(map);
    if (result.solution.isEmpty())
        return;
    const int station = m_config.stationOfSolution(result.solution);
    if (!result.calibrated) {
        refuse(station, result, StationLog::noCalibration());
    } else if (!result.hasAlgoResult) {
        refuse(station, result, StationLog::noTask());
        emit sgShowSrcImg(result.solution, result.originImage);
    } else {
        answer(station, result);
    }
}

void ResultHandler::refuse(int station, const TaskResult& result, const QString& reason)
{
    m_link.sendResult(station, plc::nothingFoundAngle, 0, 0);
    emit replied(station, result.taskTime);
    emit sgShowLog(station, m_log.noResult(result.taskName, reason));
    emit readingChanged(station, {false, plc::nothingFoundAngle, 0, 0, reason, result.taskTime});
    if (m_store)
        m_store->saveSourceImage(station, result.taskName, result.originImage);
}

void ResultHandler::answer(int station, const TaskResult& result)
{
    const QPointF machine = reply(station, result);
    store(station, result);
    emit sgShowImg(station, result.image);
    emit sgShowLog(station, m_log.result(result.taskName, result.angle, machine));
    emit readingChanged(station, {result.angle < plc::nothingFoundAngle, result.angle, machine.x(), machine.y(),
                                  result.tip, result.taskTime});
}

/// A result of no station is neither converted nor answered, only recorded and shown.
QPointF ResultHandler::reply(int station, const TaskResult& result)
{
    if (station == 0)
        return {};
    const QPointF machine = toMachine(m_config.station(station), m_config.use4pointstand, result.center);
    m_link.sendResult(station, result.angle, machine.x(), machine.y());
    emit replied(station, result.taskTime);
    return machine;
}

/// The result image goes first, since the row names its path.
void ResultHandler::store(int station, const TaskResult& result)
{
    if (!m_store)
        return;
    const QString number = QString::number(station);
    StationResult record;
    record.angle = result.angle;
    record.errorType = result.error;
    record.matchScore = result.score * 100;
    record.resultTip = result.tip;
    record.threshBenchMark = QStringLiteral("%1_%2").arg(number, result.taskName);
    record.stationName = QStringLiteral("Station_") + number;
    record.value1 = m_store->saveResultImage(station, result.taskName, result.image);
    record.value2 = record.threshBenchMark;
    record.value3 = result.evidence;
    m_store->saveSourceImage(station, result.taskName, result.originImage);
    m_store->insertResult(record);
}
