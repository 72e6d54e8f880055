#include "workflow/TriggersInHand.h"

#include "workflow/StandIn.h"

#include <valvecell/ResultKeys.h>

#include <algorithm>

namespace {
constexpr qint64 nsInMs = 1000 * 1000;
}

TriggersInHand::TriggersInHand(Scheduler& scheduler, StandIn& standIn, Deadline deadline, Capture capture,
                               Inspect inspect, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_standIn(standIn)
    , m_deadline(std::move(deadline))
    , m_capture(std::move(capture))
    , m_inspect(std::move(inspect))
    , m_overdue(scheduler.timer(Scheduler::SingleShot, [this] { failOverdue(); }))
{
}

qint64 TriggersInHand::deadlineNs() const
{
    return qMax(1, m_deadline()) * nsInMs;
}

bool TriggersInHand::accept(Trigger trigger)
{
    failOverdue(); // after the program was held up, before what waited for it
    const auto isOfStation = [&trigger](const InHand& each) { return each.trigger.station == trigger.station; };
    if (std::count_if(m_triggers.begin(), m_triggers.end(), isOfStation) >= maxWaiting)
        return false;
    trigger.number = ++m_numbers;
    if (trigger.acceptedNs == 0)
        trigger.acceptedNs = m_scheduler.elapsedNs();
    const qint64 deadline = trigger.acceptedNs + deadlineNs();
    m_triggers.push_back({trigger, WaitsForCamera, deadline});
    m_standIn.keep(trigger, deadline);
    failOverdue();
    captureNext(trigger.camera);
    return true;
}

TriggersInHand::Position TriggersInHand::captureOf(const QString& cameraKey)
{
    return std::find_if(m_triggers.begin(), m_triggers.end(), [&cameraKey](const InHand& each) {
        return each.stage == Captures && each.trigger.camera == cameraKey;
    });
}

void TriggersInHand::captureNext(const QString& cameraKey)
{
    if (captureOf(cameraKey) != m_triggers.end())
        return;
    const auto next = std::find_if(m_triggers.begin(), m_triggers.end(), [&cameraKey](const InHand& each) {
        return each.stage == WaitsForCamera && each.trigger.camera == cameraKey;
    });
    if (next == m_triggers.end())
        return;
    if (m_drains.value(cameraKey) > m_scheduler.elapsedNs())
        return fail(next, Failure::Overdue, tr("相机%1上一幅图像未到").arg(cameraKey));
    m_drains.remove(cameraKey);
    next->stage = Captures;
    const Trigger trigger = next->trigger;
    emit captureStarted(trigger);
    const bool numbered = m_capture(trigger);
    if (const auto own = withNumber(trigger.number); own != m_triggers.end())
        own->numbered = numbered;
}

TriggersInHand::Position TriggersInHand::withNumber(quint64 number)
{
    return std::find_if(m_triggers.begin(), m_triggers.end(),
                        [number](const InHand& each) { return each.trigger.number == number; });
}

TriggersInHand::Position TriggersInHand::ownerOf(const Outcome& outcome)
{
    return std::find_if(m_triggers.begin(), m_triggers.end(), [&outcome](const InHand& each) {
        return each.stage == Captures &&
               (each.numbered ? each.trigger.number == outcome.number : each.trigger.camera == outcome.cameraKey);
    });
}

void TriggersInHand::onCaptured(const Outcome& outcome)
{
    const QString& cameraKey = outcome.cameraKey;
    failOverdue();
    if (outcome.number == 0 && m_drains.remove(cameraKey) > 0)
        return; // it belongs to a trigger that is answered already
    const auto own = ownerOf(outcome);
    if (own == m_triggers.end())
        return emit unasked(cameraKey);
    if (outcome.image.isNull()) {
        const QString reason = outcome.problem.isEmpty() ? tr("相机%1的图像无效").arg(cameraKey) : outcome.problem;
        return fail(own, Failure::NoImage, reason);
    }
    own->stage = IsInspected;
    own->trigger.imageNs = m_scheduler.elapsedNs();
    const Trigger trigger = own->trigger;
    emit imageArrived(trigger); // before the engine has it: the engine's time counts from there
    captureNext(trigger.camera);
    m_inspect(trigger, outcome.image);
}

void TriggersInHand::onResult(quint64 number, const QVariantMap& result)
{
    if (result.value(QLatin1String(ResultKeys::solutionName)).toString().isEmpty())
        return;
    failOverdue();
    const auto own = withNumber(number);
    if (own == m_triggers.end() || own->stage != IsInspected)
        return; // overdue, or answered once already
    const Trigger trigger = take(own);
    if (trigger.answered)
        emit failed(trigger, Failure::NoResult, tr("检测超时"));
    else
        emit finished(trigger, result);
}

Trigger TriggersInHand::take(Position position)
{
    Trigger trigger = position->trigger;
    trigger.answered = m_standIn.release(trigger.number);
    m_triggers.erase(position);
    watch();
    return trigger;
}

void TriggersInHand::fail(Position position, Failure failure, const QString& reason)
{
    const Trigger trigger = take(position);
    emit failed(trigger, failure, reason);
    captureNext(trigger.camera);
}

void TriggersInHand::failOverdue()
{
    const qint64 now = m_scheduler.elapsedNs();
    const auto isOverdue = [now](const InHand& each) { return each.deadlineNs <= now; };
    for (;;) {
        const auto own = std::find_if(m_triggers.begin(), m_triggers.end(), isOverdue);
        if (own == m_triggers.end())
            break;
        const QString& camera = own->trigger.camera;
        if (own->stage == Captures && !own->numbered)
            m_drains[camera] = now + deadlinesToDrain * deadlineNs();
        if (own->stage == IsInspected)
            fail(own, Failure::NoResult, tr("检测超时"));
        else
            fail(own, Failure::Overdue, tr("相机%1没有图像").arg(camera));
    }
    watch();
}

/// Lets the timer come due with the next deadline.
void TriggersInHand::watch()
{
    const auto next = std::min_element(m_triggers.begin(), m_triggers.end(),
                                       [](const InHand& a, const InHand& b) { return a.deadlineNs < b.deadlineNs; });
    if (next == m_triggers.end())
        return m_overdue->stop();
    const qint64 left = next->deadlineNs - m_scheduler.elapsedNs();
    m_overdue->start(static_cast<int>(qMax<qint64>(0, (left + nsInMs - 1) / nsInMs)));
}
