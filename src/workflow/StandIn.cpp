#include "workflow/StandIn.h"

#include "common/Scheduler.h"
#include "common/Step.h"
#include "workflow/PlcFrames.h"
#include "workflow/Trigger.h"

#include <valvecell/ISerialUrgent.h>

#include <algorithm>

StandIn::StandIn(const Scheduler& scheduler)
    : m_scheduler(scheduler)
{
}

void StandIn::setPort(ISerialUrgent* port)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_port = port;
}

void StandIn::keep(const Trigger& trigger, qint64 deadlineNs)
{
    if (trigger.source == Trigger::Test)
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_kept.push_back({trigger.number, trigger.station, trigger.session, deadlineNs + graceNs, false});
}

bool StandIn::release(quint64 number)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto own =
        std::find_if(m_kept.begin(), m_kept.end(), [number](const Kept& each) { return each.number == number; });
    if (own == m_kept.end())
        return false;
    const bool answered = own->answered;
    m_kept.erase(own);
    return answered;
}

void StandIn::look()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const qint64 now = m_scheduler.elapsedNs();
    for (Kept& each : m_kept) {
        if (!m_port || each.answered || each.dueNs > now)
            continue;
        m_port->sendUrgent(plc::result(each.station, plc::nothingFoundAngle, 0, 0), each.session);
        m_port->sendUrgent(plc::notFound(each.station), each.session);
        each.answered = true;
        const char* const step = Step::current();
        qWarning("station %d: answered as not found while the program is held up in %s", each.station,
                 step ? step : "an unknown step");
    }
}
