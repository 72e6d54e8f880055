#include "RefusalProbe.h"

#include "PlcLine.h"

#include <utility>

RefusalProbe::RefusalProbe(PlcLine& line, TriggerExchange& exchange, int count)
    : m_line(line)
    , m_exchange(exchange)
    , m_count(count)
{
    connect(&exchange, &TriggerExchange::done, this, &RefusalProbe::onDone);
}

void RefusalProbe::start()
{
    m_running = true;
    if (m_count > 0)
        m_line.send(PlcFrames::models(absentIndex, absentIndex));
    next();
}

void RefusalProbe::next()
{
    if (m_result.asked < m_count) {
        m_exchange.trigger(m_result.asked++ % 2 + 1);
        return;
    }
    stop();
}

void RefusalProbe::stop()
{
    if (std::exchange(m_running, false))
        emit finished();
}

void RefusalProbe::onDone(const ExchangeResult& result)
{
    if (!m_running)
        return;
    if (result.answered)
        m_result.latencyMs.append(result.latencyMs);
    m_result.refused += result.noticed && result.answer.angle == PlcFrames::refusedAngle;
    next();
}
