#include "workflow/AlarmBook.h"

#include "common/Scheduler.h"

#include <algorithm>

namespace {

template <typename Alarms>
auto position(Alarms& alarms, Alarm::Kind kind, const QString& subject)
{
    return std::find_if(alarms.begin(), alarms.end(),
                        [&](const Alarm& alarm) { return alarm.kind == kind && alarm.subject == subject; });
}

} // namespace

AlarmBook::AlarmBook(const Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
{
}

Alarm* AlarmBook::find(Alarm::Kind kind, const QString& subject)
{
    const auto found = position(m_alarms, kind, subject);
    return found == m_alarms.end() ? nullptr : &*found;
}

bool AlarmBook::lasts(Alarm::Kind kind, const QString& subject) const
{
    return std::any_of(m_alarms.begin(), m_alarms.end(), [&](const Alarm& alarm) {
        return alarm.kind == kind && (subject.isNull() || alarm.subject == subject);
    });
}

void AlarmBook::begin(Alarm alarm)
{
    alarm.since = m_scheduler.now();
    alarm.acknowledged = alarm.isQuiet();
    m_alarms.prepend(alarm);
    emit changed();
}

void AlarmBook::end(Alarm alarm)
{
    alarm.until = m_scheduler.now();
    m_history.prepend(alarm);
    if (m_history.size() > maxHistory)
        m_history.removeLast();
}

/// With another reason it stays the same alarm; one that had gone and comes back counts on.
void AlarmBook::raise(Alarm::Kind kind, const QString& subject, const QString& detail)
{
    if (Alarm* const known = find(kind, subject)) {
        if (known->detail == detail)
            return;
        known->detail = detail;
        emit changed();
        return;
    }
    Alarm alarm;
    alarm.kind = kind;
    alarm.subject = subject;
    alarm.detail = detail;
    const auto past = position(m_past, kind, subject);
    if (past != m_past.end()) {
        alarm.count = past->count + 1;
        m_past.erase(past);
    }
    begin(alarm);
}

void AlarmBook::raiseCounted(Alarm::Kind kind, const QString& subject, int count)
{
    const auto past = position(m_past, kind, subject);
    if (past != m_past.end() && past->count >= count)
        return; // acknowledged, and nothing new since
    const auto known = position(m_alarms, kind, subject);
    if (known != m_alarms.end() && known->count >= count)
        return;
    if (known != m_alarms.end()) {
        end(*known);
        m_alarms.erase(known);
    }
    if (past != m_past.end())
        m_past.erase(past);
    Alarm alarm;
    alarm.kind = kind;
    alarm.subject = subject;
    alarm.count = count;
    begin(alarm);
}

void AlarmBook::clear(Alarm::Kind kind, const QString& subject)
{
    const auto known = position(m_alarms, kind, subject);
    if (known == m_alarms.end() || known->isLatched())
        return;
    m_past.append(*known);
    end(*known);
    m_alarms.erase(known);
    emit changed();
}

void AlarmBook::set(bool present, Alarm::Kind kind, const QString& subject, const QString& detail)
{
    if (present)
        raise(kind, subject, detail);
    else
        clear(kind, subject);
}

void AlarmBook::acknowledge()
{
    const QVector<Alarm> seen = m_alarms;
    for (Alarm& alarm : m_alarms) {
        alarm.acknowledged = true;
        if (!alarm.isLatched())
            continue;
        m_past.append(alarm);
        end(alarm);
    }
    const auto isOver = [](const Alarm& alarm) { return alarm.isLatched(); };
    m_alarms.erase(std::remove_if(m_alarms.begin(), m_alarms.end(), isOver), m_alarms.end());
    emit changed();
    for (const Alarm& alarm : seen)
        emit acknowledged(alarm);
}
