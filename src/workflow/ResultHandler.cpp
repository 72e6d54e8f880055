#include "workflow/ResultHandler.h"

#include "config/ksGlobalConfig.h"
#include "db/StationResult.h"
#include "workflow/IResultStore.h"
#include "workflow/LogTime.h"
#include "workflow/PlcLink.h"

#include <cmath>

namespace {

/// Cut to thousandths, never rounded, printed with three decimals.
QString cut(double value)
{
    const double whole = std::trunc(value);
    return QString::number(whole + std::trunc((value - whole) * 1000.0) / 1000.0, 'f', 3);
}

QString resultLine(const TaskResult& result, const QPointF& machine)
{
    const bool found = result.angle < plc::kNothingFoundAngle;
    const double angle = found ? result.angle : plc::kNothingFoundAngle;
    const QString line = logTimeColon() + result.taskName + QStringLiteral(" angle :") + QString::number(angle, 'f', 3);
    return line + (found ? QStringLiteral(" center:(%1,%2)").arg(cut(machine.x()), cut(machine.y()))
                         : QStringLiteral(" no found Value"));
}

} // namespace

ResultHandler::ResultHandler(const ksGlobalConfig& config, PlcLink& link, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_link(link)
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
        refuse(station, result, " No Cali!!!");
    } else if (!result.hasAlgoResult) {
        refuse(station, result, " No Task!!!");
        emit sgShowSrcImg(result.solution, result.originImage);
    } else {
        answer(station, result);
    }
}

void ResultHandler::refuse(int station, const TaskResult& result, const char* reason)
{
    m_link.sendResult(station, plc::kNothingFoundAngle, 0, 0);
    emit replied(station, result.taskTime);
    emit sgShowLog(station, logTimeColon() + result.taskName + QLatin1String(reason));
    emit readingChanged(station, {false, plc::kNothingFoundAngle, 0, 0, QLatin1String(reason), result.taskTime});
    if (m_store)
        m_store->saveSourceImage(station, result.taskName, result.originImage);
}

void ResultHandler::answer(int station, const TaskResult& result)
{
    const QPointF machine = reply(station, result);
    store(station, result);
    emit sgShowImg(station, result.image);
    emit sgShowLog(station, resultLine(result, machine));
    emit readingChanged(station, {result.angle < plc::kNothingFoundAngle, result.angle, machine.x(), machine.y(),
                                  result.tip, result.taskTime});
}

/// A result of no station is neither converted nor answered, only recorded and told.
QPointF ResultHandler::reply(int station, const TaskResult& result)
{
    if (station == 0)
        return {};
    const QPointF machine = m_config.calibration(station).toMachine(result.center);
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
