#include "workflow/ResultHandler.h"

#include "common/Step.h"
#include "config/ksGlobalConfig.h"
#include "db/StationDB.h"
#include "workflow/IResultStore.h"

namespace {

constexpr double nanosecondsInMs = 1e6;

StationResult emptyRecord(int station, const QString& model)
{
    const QString number = QString::number(station);
    StationResult record;
    record.threshBenchMark = QStringLiteral("%1_%2").arg(number, model);
    record.stationName = QStringLiteral("Station_") + number;
    record.value2 = record.threshBenchMark;
    return record;
}

CellError errorOf(Failure failure)
{
    switch (failure) {
    case Failure::NoImage:
        return CellError::NoImage;
    case Failure::Overdue:
        return CellError::Overdue;
    case Failure::NoResult:
        break;
    }
    return CellError::NoResult;
}

/// What was sent, behind what the answer rests on.
QString withSent(const QString& evidence, qint32 plcIndex, const PlcLink::Sent& sent)
{
    const QString own =
        QStringLiteral("plc=%1;x=%2;y=%3").arg(QString::number(plcIndex), plc::cutText(sent.x), plc::cutText(sent.y));
    return evidence.isEmpty() ? own : evidence + QLatin1Char(';') + own;
}

} // namespace

ResultHandler::ResultHandler(const ksGlobalConfig& config, PlcLink& link, const Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_link(link)
    , m_scheduler(scheduler)
    , m_log(scheduler)
{
    qRegisterMetaType<StationReading>();
}

/// A result of another solution than the trigger's is shown and recorded as such, and the trigger has none.
void ResultHandler::onResult(const Trigger& trigger, const QVariantMap& map)
{
    const Step step("result of the engine");
    const TaskResult result = TaskResult::fromMap(map);
    const Part part{trigger, result.solution == trigger.solution ? trigger.station : 0, result,
                    m_scheduler.elapsedNs()};
    if (!result.calibrated) {
        refuse(part, StationLog::noCalibration());
    } else if (!result.hasAlgoResult) {
        refuse(part, StationLog::noTask());
        emit sgShowSrcImg(result.solution, result.originImage);
        emit pictureNamed(part.station, trigger.model);
    } else {
        answer(part);
    }
    if (part.station == 0)
        onFailed(trigger, Failure::NoResult, tr("结果属于方案%1").arg(result.solution));
}

void ResultHandler::onFailed(const Trigger& trigger, Failure failure, const QString& reason)
{
    const PlcLink::Sent sent = send(trigger, trigger.station, plc::nothingFoundAngle, {});
    emit replied(trigger, 0);
    const QString words = sent.delivered ? StationLog::because(failure) : StationLog::lineGone();
    emit sgShowLog(trigger.station, m_log.noResult(trigger.model, words) + QLatin1Char(' ') + reason);
    const CellError error = sent.delivered ? errorOf(failure) : CellError::NotSent;
    const StationReading reading = readingOf(trigger, plc::nothingFoundAngle, error, words + QLatin1Char(' ') + reason);
    emit readingChanged(trigger.station, reading);
    storeEnd(trigger, reading);
}

StationReading ResultHandler::readingOf(const Trigger& trigger, double angle, CellError error, const QString& tip) const
{
    StationReading reading;
    reading.angle = angle;
    reading.tip = tip;
    reading.test = trigger.source == Trigger::Test;
    reading.error = static_cast<int>(error);
    reading.model = trigger.model;
    reading.plcIndex = trigger.plcIndex;
    reading.time = m_scheduler.now();
    return reading;
}

void ResultHandler::onRefused(const Trigger& trigger, Refusal refusal)
{
    const bool overrun = refusal == Refusal::Overrun;
    const StationReading reading =
        readingOf(trigger, plc::refusedAngle, overrun ? CellError::Overrun : CellError::NoModel, {});
    emit refused(trigger.station, reading);
    storeEnd(trigger, reading);
}

PlcLink::Sent ResultHandler::send(const Trigger& trigger, int station, double angle, const QPointF& machine)
{
    if (trigger.source == Trigger::Test)
        return PlcLink::asSent(angle, machine.x(), machine.y());
    if (trigger.answered)
        return m_link.sentElsewhere(station);
    return m_link.sendResult(station, angle, machine.x(), machine.y(), trigger.session);
}

void ResultHandler::refuse(const Part& part, const QString& reason)
{
    const TaskResult& result = part.result;
    const PlcLink::Sent sent = send(part.trigger, part.station, plc::nothingFoundAngle, {});
    emit replied(part.trigger, result.taskTime);
    const QString words = sent.delivered ? reason : StationLog::lineGone();
    emit sgShowLog(part.station, m_log.noResult(result.taskName, words));
    const CellError error = sent.delivered ? CellError::NoResult : CellError::NotSent;
    StationReading reading = readingOf(part.trigger, plc::nothingFoundAngle, error, words);
    reading.taskTime = result.taskTime;
    if (m_store && !reading.test)
        reading.sourceImage = m_store->saveSourceImage(part.station, result.taskName, result.originImage, false);
    emit readingChanged(part.station, reading);
}

void ResultHandler::answer(const Part& part)
{
    Verdict verdict = reply(part);
    verdict.time = m_scheduler.now();
    if (part.trigger.source != Trigger::Test)
        store(part, verdict);
    show(part, verdict);
}

/// A result of no station is neither converted nor answered, only recorded and shown.
ResultHandler::Verdict ResultHandler::reply(const Part& part)
{
    Verdict verdict;
    verdict.tip = part.result.tip;
    verdict.sent = PlcLink::asSent(part.result.angle, 0, 0);
    if (part.station == 0)
        return verdict;
    const Calibration calibration = m_config.calibration(part.station);
    const QString problem = calibration.problem();
    verdict.calibration = calibration.version();
    const bool found = part.result.angle < plc::noticeAngle;
    const QPointF machine = problem.isEmpty() ? calibration.toMachine(part.result.center) : QPointF();
    const bool refused = found && !problem.isEmpty();
    verdict.sent = send(part.trigger, part.station, refused ? plc::nothingFoundAngle : part.result.angle, machine);
    emit replied(part.trigger, part.result.taskTime);
    verdict.good = verdict.sent.delivered && verdict.sent.carried && !refused;
    if (!verdict.sent.delivered) {
        verdict.error = CellError::NotSent;
        verdict.tip = StationLog::lineGone().trimmed();
    } else if (!verdict.sent.carried) {
        verdict.error = CellError::NotCarried;
        verdict.tip = tr("坐标超出范围，请检查标定");
    } else if (refused) {
        verdict.error = CellError::Calibration;
        verdict.tip = tr("标定不可用：%1").arg(problem);
    }
    if (found)
        emit calibrationJudged(part.station, refused ? problem : verdict.sent.carried ? QString() : verdict.tip);
    return verdict;
}

bool ResultHandler::Verdict::found() const
{
    return good && sent.angle < plc::noticeAngle;
}

/// The result image goes first, since the row names its path.
void ResultHandler::store(const Part& part, Verdict& verdict)
{
    if (!m_store)
        return;
    const Step step("record of a result");
    const TaskResult& result = part.result;
    StationResult record = emptyRecord(part.station, result.taskName);
    record.angle = verdict.good ? result.angle : plc::nothingFoundAngle;
    record.errorType = verdict.good ? result.error : static_cast<int>(verdict.error);
    record.matchScore = result.score * 100;
    record.resultTip = verdict.tip;
    record.time = verdict.time;
    const bool found = verdict.found();
    record.value1 = verdict.resultImage = m_store->saveResultImage(part.station, result.taskName, result.image, found);
    record.value3 = withSent(result.evidence, part.trigger.plcIndex, verdict.sent);
    record.part = partOf(part.trigger);
    record.part.station = part.station;
    record.part.model = result.taskName;
    record.part.outcome = found ? PartOutcome::Found : PartOutcome::NotFound;
    record.part.angle = verdict.sent.angle;
    record.part.x = verdict.sent.x;
    record.part.y = verdict.sent.y;
    record.part.score = record.matchScore;
    record.part.resultMs = (part.resultNs - part.trigger.acceptedNs) / nanosecondsInMs;
    record.part.calibration = verdict.calibration;
    record.part.sourceImage = verdict.sourceImage =
        m_store->saveSourceImage(part.station, result.taskName, result.originImage, found);
    m_store->insertResult(record);
}

PartRecord ResultHandler::partOf(const Trigger& trigger) const
{
    PartRecord part;
    part.station = trigger.station;
    part.model = trigger.model;
    part.plcIndex = trigger.plcIndex;
    if (trigger.imageNs > 0)
        part.imageMs = (trigger.imageNs - trigger.acceptedNs) / nanosecondsInMs;
    if (trigger.acceptedNs > 0)
        part.replyMs = (m_scheduler.elapsedNs() - trigger.acceptedNs) / nanosecondsInMs;
    return part;
}

void ResultHandler::storeEnd(const Trigger& trigger, const StationReading& reading)
{
    if (!m_store || trigger.source == Trigger::Test)
        return;
    StationResult record = emptyRecord(trigger.station, trigger.model);
    record.angle = reading.angle;
    record.errorType = reading.error;
    record.resultTip = reading.tip.trimmed();
    record.time = reading.time;
    record.value3 = withSent({}, trigger.plcIndex, {});
    record.part = partOf(trigger);
    record.part.angle = reading.angle;
    if (reading.angle >= plc::refusedAngle)
        record.part.outcome = PartOutcome::Refused;
    m_store->insertResult(record);
}

void ResultHandler::show(const Part& part, const Verdict& verdict)
{
    const Step step("picture of a result");
    const TaskResult& result = part.result;
    const PlcLink::Sent& sent = verdict.sent;
    emit sgShowImg(part.station, result.image);
    emit pictureNamed(part.station, part.trigger.model);
    if (!sent.delivered)
        emit sgShowLog(part.station, m_log.noResult(result.taskName, StationLog::lineGone()));
    else
        emit sgShowLog(part.station,
                       m_log.result(result.taskName, verdict.good ? result.angle : sent.angle, {sent.x, sent.y}));
    StationReading reading = readingOf(part.trigger, sent.angle, verdict.error, verdict.tip);
    reading.found = verdict.found();
    reading.x = sent.x;
    reading.y = sent.y;
    reading.taskTime = result.taskTime;
    reading.time = verdict.time;
    if (verdict.good)
        reading.error = result.error;
    reading.resultImage = verdict.resultImage;
    reading.sourceImage = verdict.sourceImage;
    emit readingChanged(part.station, reading);
}
