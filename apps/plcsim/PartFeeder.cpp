#include "PartFeeder.h"

#include "PlcLine.h"

#include <utility>

PartFeeder::PartFeeder(PlcLine& line, TriggerExchange& exchange, std::array<ImageCycle, 2> images, int parts)
    : m_line(line)
    , m_exchange(exchange)
    , m_images(std::move(images))
    , m_parts(parts)
{
    connect(&exchange, &TriggerExchange::done, this, &PartFeeder::onDone);
}

void PartFeeder::start()
{
    m_running = true;
    next();
}

void PartFeeder::stop()
{
    if (std::exchange(m_running, false))
        emit finished();
}

void PartFeeder::next()
{
    if (m_parts > 0 && m_fed == m_parts) {
        stop();
        return;
    }
    announceModels();
    m_exchange.trigger(m_fed % 2 + 1);
}

void PartFeeder::announceModels()
{
    const std::array<int, 2> indices{m_images[0].next().index, m_images[1].next().index};
    if (indices != m_announced)
        m_line.send(PlcFrames::models(indices[0], indices[1]));
    m_announced = indices;
}

/// A refused trigger takes no image, so the camera's next one is still the same.
void PartFeeder::onDone(const ExchangeResult& result)
{
    if (!m_running)
        return;
    ImageCycle& images = m_images[result.station - 1];
    PartRow row;
    row.number = ++m_fed;
    row.station = result.station;
    row.image = images.next();
    row.answered = result.answered;
    row.noticed = result.noticed;
    row.answer = result.answer;
    row.latencyMs = result.latencyMs;
    if (!row.refused())
        images.advance();
    emit partDone(row);
    if (m_running)
        next();
}

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
